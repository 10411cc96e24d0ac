#include "OrvelUI/Qt/KeycapsWidget.h"

#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/Qt/ControlAccessibility.h"
#include "OrvelUI/Qt/ControlDrawing.h"

namespace OrvelUI {

KeycapsWidget::KeycapsWidget(QWidget* parent) : QWidget(parent) {
    installControlAccessibility();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void KeycapsWidget::setContent(const Keycaps& keycaps, const SettingsTheme& theme) {
    if (keycaps == keycaps_ && theme == theme_) return;
    keycaps_ = keycaps;
    theme_ = theme;
    setAccessibleName(QString::fromStdString(Wording::shown(Keycaps::spoken(keycaps.caps))));
    updateGeometry();
    update();
}

QSize KeycapsWidget::sizeHint() const {
    return Drawing::scaled({0, 0, Drawing::keycapsWidth(keycaps_) + 1, keycaps_.height()}).size();
}

void KeycapsWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());
    Drawing::keycaps(painter, keycaps_, keycaps_.inks(theme_),
                     {0, height() / Drawing::uiScale() / 2});
}

}  // namespace OrvelUI
