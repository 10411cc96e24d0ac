#include "OrvelUI/Qt/LockIslandWidget.h"

#include <QGraphicsOpacityEffect>
#include <QMouseEvent>
#include <algorithm>
#include <cmath>

#include "OrvelUI/CardObservation.h"
#include "OrvelUI/IslandLayout.h"
#include "OrvelUI/Linux/Wording.h"

namespace OrvelUI {

LockIslandWidget::LockIslandWidget(LockCardModel& model, std::optional<NotchMetrics> notch,
                                   bool reduceMotion, bool increasedContrast)
    : model_(model),
      notch_(notch),
      reduceMotion_(reduceMotion),
      increasedContrast_(increasedContrast),
      body_(new CardBodyWidget(model, IslandLayout::bodyTop, IslandLayout::fieldRadius, this)),
      shadow_(IslandLayout::shadow) {
    observations_ = observeCard(model, [this] { refresh(); });
    observations_.push_back(
        model.shakeCount.observe([this, last = model.shakeCount.get()](double count) mutable {
            if (count > last) shake();
            last = count;
        }));
    refresh();
    resize(sizeHint());
}

QMargins LockIslandWidget::overhang() const {
    const int side =
        static_cast<int>(std::ceil((shadow_.reach() + ShakeEffect::reach) * Drawing::uiScale()));
    const int below = static_cast<int>(std::ceil((shadow_.reach() + 4) * Drawing::uiScale()));
    return {side, 0, side, below};
}

QSize LockIslandWidget::sizeHint() const {
    return Drawing::scaled({0, 0, content_.openSize.width, content_.openSize.height})
        .marginsAdded(overhang())
        .size();
}

QRect LockIslandWidget::placement(const QSize& area) const {
    return hanging(notch_, area);
}

void LockIslandWidget::refresh() {
    const auto before =
        std::exchange(content_, LockIslandContent::of(model_, notch_, increasedContrast_));
    setAccessibleName(QString::fromStdString(Wording::shown(content_.accessibleName)));
    setAccessibleDescription(QString::fromStdString(content_.accessibleDescription));
    body_->setContent(content_.body);
    if (content_.clock != before.clock) update(Drawing::scaled(clockRect()));
}

void LockIslandWidget::showEvent(QShowEvent*) {
    open();
}

void LockIslandWidget::open() {
    if (progress_ > 0) return;
    if (reduceMotion_ || model_.staticPreview.get()) {
        progress_ = 1;
        layOut();
        return;
    }
    auto* opacity = new QGraphicsOpacityEffect(body_);
    opacity->setOpacity(0);
    body_->setGraphicsEffect(opacity);
    opening_.start([this, opacity](double seconds) {
        constexpr Spring spring;
        const bool settled = seconds >= spring.settlingTime();
        progress_ = settled ? 1 : spring.value(seconds);
        opacity->setOpacity(IslandLayout::bodyOpacity(progress_));
        if (settled) body_->setGraphicsEffect(nullptr);
        layOut();
        return !settled;
    });
    layOut();
}

void LockIslandWidget::shake() {
    if (reduceMotion_ || model_.staticPreview.get() || !isVisible()) return;
    shaking_.start([this](double seconds) {
        const auto offset = ShakeEffect::after(seconds);
        shakeOffset_ = offset.value_or(0);
        layOut();
        return offset.has_value();
    });
}

QRectF LockIslandWidget::islandRect() const {
    const auto size = IslandLayout::size(notch_, progress_);
    const double middle = width() / Drawing::uiScale() / 2 + shakeOffset_;
    return {middle - size.width / 2, 0, size.width, size.height};
}

QRectF LockIslandWidget::clockRect() const {
    const QRectF island = islandRect();
    return {island.left() + IslandLayout::bandPadding, 0,
            content_.earWidth - IslandLayout::bandPadding, content_.bandHeight};
}

void LockIslandWidget::layOut() {
    const QRectF island = islandRect();
    body_->setGeometry(
        Drawing::scaled({island.left() + IslandLayout::contentPadding, content_.bandHeight,
                         std::max(0.0, island.width() - 2 * IslandLayout::contentPadding),
                         std::max(0.0, island.height() - content_.bandHeight)}));
    update();
}

void LockIslandWidget::resizeEvent(QResizeEvent*) {
    layOut();
}

void LockIslandWidget::mousePressEvent(QMouseEvent* event) {
    // Only the card takes clicks; a click on its shadow goes to what is behind it.
    const double s = Drawing::uiScale();
    const QPointF at(event->position() / s);
    if (!islandRect().contains(at)) return event->ignore();
    body_->field().setFocus(Qt::MouseFocusReason);
}

void LockIslandWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());
    const QRectF island = islandRect();

    painter.save();
    painter.translate(island.topLeft());
    const QPainterPath outline = Drawing::path(
        IslandShape{}.path({.x = 0, .y = 0, .width = island.width(), .height = island.height()}));
    shadow_.draw(painter, outline);
    painter.fillPath(outline, Drawing::color({Palette::island}));
    // A line inside the edge, which separates the island from a dark backdrop. There is none along
    // the top, where the island meets the edge of the display.
    painter.setClipPath(outline);
    painter.strokePath(outline.translated(0, -1).united(outline),
                       QPen(Drawing::color({Palette::lockInk, 0.14}), 2));
    painter.restore();

    painter.setOpacity(IslandLayout::bandOpacity(progress_));
    const double middle = content_.bandHeight / 2;
    if (!content_.clock.text.empty())
        Drawing::clock(painter, content_.clock, {clockRect().left(), middle});
    Drawing::symbol(painter, content_.mark,
                    {island.right() - IslandLayout::bandPadding - content_.mark.size / 2, middle});
}

}  // namespace OrvelUI
