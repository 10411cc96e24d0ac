#include "OrvelUI/Qt/AppLockBadgeWidget.h"

#include <QKeyEvent>
#include <cmath>
#include <utility>

#include "OrvelUI/CardObservation.h"
#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/Motion.h"

namespace OrvelUI {

using Badge = AppLockBadgeContent;

AppLockBadgeWidget::AppLockBadgeWidget(LockCardModel& model, bool unlocking, bool reduceMotion,
                                       std::function<void()> onTap, std::function<void()> onCancel)
    : model_(model),
      unlocking_(unlocking),
      reduceMotion_(reduceMotion),
      onTap_(std::move(onTap)),
      onCancel_(std::move(onCancel)),
      content_(Badge::of(model, unlocking)),
      shadow_({content_.shadowOpacity, content_.shadowRadius, Badge::shadowDrop}) {
    if (unlocking) {
        body_ = new CardBodyWidget(model, Badge::padding, Badge::fieldRadius, this);
        body_->field().onEscape = [this] { cancel(); };
    } else {
        setFocusPolicy(Qt::StrongFocus);
        setCursor(Qt::PointingHandCursor);
    }
    observations_ = observeCard(model, [this] { refresh(); });
    observations_.push_back(
        model.shakeCount.observe([this, last = model.shakeCount.get()](double count) mutable {
            if (count > last) shake();
            last = count;
        }));
    refresh();
    resize(sizeHint());
}

QMargins AppLockBadgeWidget::overhang() const {
    const double shake = unlocking_ ? ShakeEffect::reach : 0;
    const int side = static_cast<int>(std::ceil((shadow_.reach() + shake) * Drawing::uiScale()));
    const int end = static_cast<int>(std::ceil(shadow_.reach() * Drawing::uiScale()));
    return {side, end, side, end};
}

QSize AppLockBadgeWidget::sizeHint() const {
    return Drawing::scaled({0, 0, content_.size.width, content_.size.height})
        .marginsAdded(overhang())
        .size();
}

// A panel that is as small as the card has no space for the shadow.
QRect AppLockBadgeWidget::placement(const QSize& area) const {
    const QSize size = sizeHint().boundedTo(area);
    return {QPoint((area.width() - size.width()) / 2, (area.height() - size.height()) / 2), size};
}

void AppLockBadgeWidget::refresh() {
    const auto before = std::exchange(content_, Badge::of(model_, unlocking_));
    setAccessibleName(QString::fromStdString(Wording::shown(content_.accessibleName)));
    setAccessibleDescription(QString::fromStdString(Wording::shown(content_.accessibleHint)));
    if (body_ != nullptr)
        body_->setContent(*content_.body);
    else if (content_ != before)
        update();
}

// Deferred, because the handler may replace this widget, none of whose functions may be running
// then.
void AppLockBadgeWidget::tap() {
    if (!unlocking_)
        QMetaObject::invokeMethod(
            this, [this] { onTap_(); }, Qt::QueuedConnection);
}

void AppLockBadgeWidget::cancel() {
    QMetaObject::invokeMethod(
        this, [this] { onCancel_(); }, Qt::QueuedConnection);
}

void AppLockBadgeWidget::shake() {
    if (reduceMotion_ || !unlocking_ || !isVisible()) return;
    shaking_.start([this](double seconds) {
        const auto offset = ShakeEffect::after(seconds);
        shakeOffset_ = offset.value_or(0);
        layOut();
        return offset.has_value();
    });
}

QRectF AppLockBadgeWidget::cardRect() const {
    const double s = Drawing::uiScale();
    return {width() / s / 2 - content_.size.width / 2 + shakeOffset_,
            height() / s / 2 - content_.size.height / 2, content_.size.width, content_.size.height};
}

void AppLockBadgeWidget::layOut() {
    const QRectF card = cardRect();
    if (body_ != nullptr)
        body_->setGeometry(Drawing::scaled({card.left() + Badge::padding, card.top(),
                                            card.width() - 2 * Badge::padding, card.height()}));
    update();
}

void AppLockBadgeWidget::resizeEvent(QResizeEvent*) {
    layOut();
}

void AppLockBadgeWidget::mousePressEvent(QMouseEvent* event) {
    if (!cardRect().contains(event->position() / Drawing::uiScale())) return event->ignore();
    if (body_ != nullptr)
        body_->field().setFocus(Qt::MouseFocusReason);
    else if (event->button() == Qt::LeftButton)
        tap();
}

void AppLockBadgeWidget::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (!unlocking_ && (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space))
        return tap();
    event->ignore();
}

void AppLockBadgeWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());
    const QRectF card = Drawing::snapped(painter, cardRect());
    QPainterPath outline;
    outline.addRoundedRect(card, Badge::cornerRadius, Badge::cornerRadius);
    // Of a partial shadow only the corners would be visible.
    if (rect().size() == sizeHint()) shadow_.draw(painter, outline);
    // The shadow continues below the card and darkens what shows through it.
    painter.fillPath(outline, Drawing::color({Palette::lockCard, Palette::lockCardOpacity}));
    painter.setPen(QPen(Drawing::color({Palette::lockInk, 0.12}), 1));
    painter.drawRoundedRect(card.adjusted(0.5, 0.5, -0.5, -0.5), Badge::cornerRadius - 0.5,
                            Badge::cornerRadius - 0.5);
    if (unlocking_) return;

    const double middle = card.center().y();
    const double icon = content_.icon.size;
    const QRectF iconRect(card.left() + Badge::compactPadding, middle - icon / 2, icon, icon);
    Drawing::avatar(painter, content_.icon, iconRect);
    const double mark = content_.mark.size;
    const double markX = card.right() - Badge::compactPadding - 5 - mark / 2;
    Drawing::symbol(painter, content_.mark, {markX, middle});
    const double left = iconRect.right() + Badge::compactPadding;
    Drawing::label(
        painter, content_.title,
        {left, card.top(), markX - mark / 2 - Badge::compactPadding - left, card.height()});
}

}  // namespace OrvelUI
