#include "OrvelUI/Qt/ThinScrollBar.h"

#include <QStyle>
#include <QStyleOptionSlider>

namespace OrvelUI {

ThinScrollBar::ThinScrollBar(QWidget* parent) : QScrollBar(Qt::Vertical, parent) {}

void ThinScrollBar::setContent(const FormStyle& style) {
    style_ = style;
    update();
}

QSize ThinScrollBar::sizeHint() const {
    return Drawing::scaled({0, 0, 11, 40}).size();
}

void ThinScrollBar::paintEvent(QPaintEvent*) {
    if (maximum() <= minimum()) return;
    // Where Qt's own style has the handle, because that is where the pointer can drag it.
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF handle = QScrollBar::style()->subControlRect(QStyle::CC_ScrollBar, &option,
                                                              QStyle::SC_ScrollBarSlider, this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Drawing::color(style_.colors.track(false).fill));
    const double inset = handle.width() * 0.25;
    const QRectF shown = handle.adjusted(inset, 2, -inset, -2);
    painter.drawRoundedRect(shown, shown.width() / 2, shown.width() / 2);
}

}  // namespace OrvelUI
