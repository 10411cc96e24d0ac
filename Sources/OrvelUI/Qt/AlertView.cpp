#include "OrvelUI/Qt/AlertView.h"

#include <QKeyEvent>
#include <utility>

namespace OrvelUI {

using Drawing::units;

namespace {

// In points.
constexpr double alertWidth = 380;
constexpr double padding = 22;
constexpr double gap = 8;
constexpr double footer = 20;

}  // namespace

AlertView::AlertView(Alert alert, std::function<void(std::size_t)> chosen)
    : alert_(std::move(alert)),
      chosen_(std::move(chosen)),
      message_(new FormLabel(this)),
      informative_(new FormLabel(this)) {
    for (std::size_t i = 0; i < alert_.buttons.size(); ++i)
        buttons_.push_back(new FormButtonWidget(this));
    refresh();
    // Return must not trigger a destructive button by accident.
    if (!buttons_.empty())
        (alert_.buttons.front().destructive ? buttons_.back() : buttons_.front())->setFocus();
}

void AlertView::showModel(const FormStyle& now) {
    using Kind = FormButton::Kind;
    message_->setContent({.text = alert_.message, .role = TextRole::paneTitle}, now.colors);
    informative_->setContent({.text = alert_.informative}, now.colors);
    setAccessibleName(message_->text());
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        const auto& button = alert_.buttons[i];
        buttons_[i]->setContent({.title = button.title,
                                 .kind = button.destructive ? Kind::destructive
                                         : i == 0           ? Kind::prominent
                                                            : Kind::plain,
                                 .press = [this, i] { choose(i); }},
                                now);
    }
}

void AlertView::choose(std::size_t button) {
    const auto chosen = std::exchange(chosen_, nullptr);
    if (chosen) chosen(button);
}

void AlertView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && !buttons_.empty()) return choose(buttons_.size() - 1);
    WindowView::keyPressEvent(event);
}

QSize AlertView::sizeHint() const {
    const int inner = units(alertWidth - 2 * padding);
    return {units(alertWidth), 2 * units(padding) + message_->heightForWidth(inner) + units(gap) +
                                   informative_->heightForWidth(inner) + units(footer) +
                                   units(FormButtonWidget::height)};
}

void AlertView::resizeEvent(QResizeEvent*) {
    const int side = units(padding);
    const int inner = width() - 2 * side;
    message_->setGeometry(side, side, inner, message_->heightForWidth(inner));
    informative_->setGeometry(side, message_->geometry().bottom() + units(gap), inner,
                              informative_->heightForWidth(inner));
    int right = width() - side;
    for (auto* button : buttons_) {
        const QSize size = button->sizeHint();
        button->setGeometry(right - size.width(), height() - side - size.height(), size.width(),
                            size.height());
        right = button->x() - units(gap);
    }
}

void AlertView::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    painter.fillRect(painter.rect(), Drawing::color({.value = style().colors.surface()}));
}

}  // namespace OrvelUI
