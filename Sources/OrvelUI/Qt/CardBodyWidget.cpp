#include "OrvelUI/Qt/CardBodyWidget.h"

#include <utility>

#include "OrvelUI/Qt/Drawing.h"

namespace OrvelUI {

using Body = CardBodyContent;

CardBodyWidget::CardBodyWidget(LockCardModel& model, double top, double fieldRadius,
                               QWidget* parent)
    : QWidget(parent),
      model_(model),
      top_(top),
      indicator_(new IndicatorWidget(this)),
      field_(new IslandPasswordField(model, fieldRadius, this)) {
    indicator_->hide();
    setFocusProxy(field_);
}

void CardBodyWidget::setContent(const CardBodyContent& content) {
    const auto before = std::exchange(content_, content);
    const bool hadIndicator = before.indicator.kind != IndicatorContent::Kind::none;
    const bool hasIndicator = content.indicator.kind != IndicatorContent::Kind::none;
    indicator_->setContent(content.indicator, model_.staticPreview.get());
    field_->setContent(content.field);
    if (content.avatar != before.avatar) update(Drawing::scaled(avatarRect()));
    if (content.name != before.name || content.caption != before.caption ||
        hadIndicator != hasIndicator)
        update(Drawing::scaled(textRect()));
    if (content.field.canType && !before.field.canType) field_->setFocus(Qt::OtherFocusReason);
}

QRectF CardBodyWidget::avatarRect() const {
    return {0, top_, Body::avatarSide, Body::avatarSide};
}

QRectF CardBodyWidget::textRect() const {
    const double left = Body::avatarSide + Body::textGap;
    return {left, 0, width() / Drawing::uiScale() - left, top_ + Body::avatarSide + Body::rowGap};
}

void CardBodyWidget::showEvent(QShowEvent*) {
    if (content_.field.canType) field_->setFocus(Qt::OtherFocusReason);
}

void CardBodyWidget::resizeEvent(QResizeEvent*) {
    const double width = this->width() / Drawing::uiScale();
    const double size = IndicatorContent::size;
    indicator_->setGeometry(
        Drawing::scaled({width - size - 2, top_ + (Body::avatarSide - size) / 2, size, size}));
    field_->setGeometry(Drawing::scaled(
        {0, top_ + Body::avatarSide + Body::rowGap, width, PasswordFieldContent::height}));
}

void CardBodyWidget::mousePressEvent(QMouseEvent*) {
    field_->setFocus(Qt::MouseFocusReason);
}

void CardBodyWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(Drawing::uiScale(), Drawing::uiScale());
    const bool hasIndicator = content_.indicator.kind != IndicatorContent::Kind::none;
    Drawing::avatar(painter, content_.avatar, avatarRect());

    QRectF line = textRect();
    if (hasIndicator) line.setWidth(line.width() - IndicatorContent::size - Body::textGap);
    const auto caption = Drawing::lines(content_.caption, line.width());
    const double height =
        Body::nameHeight + static_cast<double>(caption.size()) * Body::captionHeight;
    line.setTop(avatarRect().center().y() - height / 2);
    line.setHeight(Body::nameHeight);
    Drawing::label(painter, content_.name, line);
    for (const auto& text : caption) {
        line = {line.left(), line.bottom(), line.width(), Body::captionHeight};
        Drawing::label(painter, text, line);
    }
}

}  // namespace OrvelUI
