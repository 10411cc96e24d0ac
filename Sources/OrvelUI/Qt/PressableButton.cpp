#include "OrvelUI/Qt/PressableButton.h"

#include <QKeyEvent>

namespace OrvelUI {

PressableButton::PressableButton(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::TabFocus);
}

void PressableButton::keyPressEvent(QKeyEvent* event) {
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat())
        return click();
    QAbstractButton::keyPressEvent(event);
}

void PressableButton::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    update();
}

void PressableButton::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    update();
}

double PressableButton::highlight() const {
    if (!isEnabled()) return 0;
    return isDown() ? 0.17 : underMouse() ? 0.09 : 0;
}

}  // namespace OrvelUI
