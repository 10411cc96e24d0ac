#include "OrvelUI/Qt/MenuBarPictures.h"

#include <QLinearGradient>
#include <string>

#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/Qt/ControlAccessibility.h"
#include "OrvelUI/Qt/Drawing.h"

namespace OrvelUI {

namespace {

void drawIcon(QPainter& painter, OrvelCore::MenuBarIconState state, const Palette::Ink& ink) {
    const auto icon = MenuBarIcon::image(state);
    const QColor color = Drawing::color(ink);
    painter.fillPath(Drawing::path(icon.filling), color);
    painter.strokePath(Drawing::path(icon.outline), QPen(color, MenuBarIcon::lineWidth));
}

}  // namespace

QImage Drawing::menuBarIcon(OrvelCore::MenuBarIconState state, int side, const Palette::Ink& ink) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / MenuBarIcon::size.width, side / MenuBarIcon::size.height);
    drawIcon(painter, state, ink);
    return image;
}

MenuBarDrawingWidget::MenuBarDrawingWidget(QWidget* parent) : QWidget(parent) {
    installControlAccessibility();
    setContent({});
}

void MenuBarDrawingWidget::setContent(const MenuBarDrawing& content) {
    content_ = content;
    setAccessibleName(QString::fromStdString(Wording::shown(content.label())));
    update();
}

QSize MenuBarDrawingWidget::sizeHint() const {
    return Drawing::scaled({0, 0, MenuBarDrawing::size.width, MenuBarDrawing::size.height}).size();
}

void MenuBarDrawingWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());
    const QRectF rect(0, 0, width() / Drawing::uiScale(), height() / Drawing::uiScale());
    QPainterPath outline;
    outline.addRoundedRect(rect, 10, 10);
    painter.setClipPath(outline);
    QLinearGradient desktop(rect.topLeft(), rect.bottomLeft());
    desktop.setColorAt(0, Drawing::color({Palette::desktopTop}));
    desktop.setColorAt(1, Drawing::color({Palette::desktopBottom}));
    painter.fillRect(rect, desktop);
    const QRectF bar(rect.topLeft(), QSizeF(rect.width(), MenuBarDrawing::barHeight));
    painter.fillRect(bar, Drawing::color({Palette::island, 0.34}));

    const double middle = bar.center().y();
    const LabelContent clock{.text = std::string(MenuBarDrawing::clock),
                             .tail = {},
                             .size = 12,
                             .weight = LabelContent::Weight::medium,
                             .ink = {}};
    const auto layout = content_.layout(bar.width(), Drawing::clockWidth(clock));
    Drawing::clock(painter, clock, {layout.clock, middle});
    painter.setPen(Qt::NoPen);
    if (layout.icon) {
        painter.setBrush(Drawing::color({Palette::accentDark, 0.4}));
        painter.drawRoundedRect(QRectF(*layout.icon - 4, middle - 11, 26, 22), 6, 6);
        painter.save();
        painter.translate(*layout.icon, middle - MenuBarIcon::size.height / 2);
        drawIcon(painter, OrvelCore::MenuBarIconState::rest, {});
        painter.restore();
    }
    painter.setBrush(Drawing::color({Palette::lockInk, 0.45}));
    for (const double x : layout.dots) painter.drawEllipse(QPointF(x, middle), 5, 5);
}

}  // namespace OrvelUI
