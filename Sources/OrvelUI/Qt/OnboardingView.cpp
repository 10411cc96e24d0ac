#include "OrvelUI/Qt/OnboardingView.h"

#include <QScrollBar>

namespace OrvelUI {

namespace {

// In points.
constexpr double footerHeight = 64;
constexpr double sides = 28;

}  // namespace

OnboardingView::OnboardingView(OnboardingModel& model)
    : model_(model),
      form_(new FormView(this)),
      dots_(new PageDotsWidget(this)),
      back_(new FormButtonWidget(this)),
      secondary_(new FormButtonWidget(this)),
      primary_(new FormButtonWidget(this)) {
    form_->setMargins(56, 28, 16);
    form_->setCentred(true);
    follow(model.observe([this] { scheduleRefresh(); }));
    refresh();
}

void OnboardingView::showModel(const FormStyle& now) {
    const auto content = OnboardingContent::of(model_);
    form_->setContent(content.form, now);
    dots_->setContent(content.dots, now);
    const auto button = [&](FormButtonWidget* widget, const std::optional<FormButton>& shown) {
        if (shown) widget->setContent(*shown, now);
        widget->setVisible(shown.has_value());
    };
    button(back_, content.back);
    button(secondary_, content.secondary);
    button(primary_, content.primary);
    const auto step = model_.flow.get().step;
    if (shownStep_ != step) form_->verticalScrollBar()->setValue(0);
    // Return must lead through the whole guide, even after a lock has taken the focus.
    if (primary_->isEnabled() && (shownStep_ != step || focusWidget() == nullptr))
        primary_->setFocus(Qt::OtherFocusReason);
    shownStep_ = step;
    arrangeFooter();
}

QSize OnboardingView::sizeHint() const {
    return Drawing::scaled({0, 0, OnboardingContent::size.width, OnboardingContent::size.height})
        .size();
}

void OnboardingView::arrangeFooter() {
    const int footer = Drawing::scaled({0, 0, 0, footerHeight}).height();
    const int side = Drawing::scaled({0, 0, sides, 0}).width();
    const int top = QWidget::height() - footer;
    const auto place = [&](QWidget* widget, int left) {
        const QSize size = widget->sizeHint();
        widget->setGeometry(left, top + (footer - size.height()) / 2, size.width(), size.height());
    };
    int right = QWidget::width() - side;
    for (auto* widget : {primary_, secondary_}) {
        if (widget->isHidden()) continue;
        place(widget, right - widget->sizeHint().width());
        right = widget->x() - Drawing::scaled({0, 0, 8, 0}).width();
    }
    place(back_, side);
    place(dots_, (QWidget::width() - dots_->sizeHint().width()) / 2);
    form_->setGeometry(0, 0, QWidget::width(), top);
}

void OnboardingView::resizeEvent(QResizeEvent*) {
    arrangeFooter();
}

void OnboardingView::paintEvent(QPaintEvent*) {
    PointPainter painter(this);
    const auto colors = style().colors;
    const QRectF rect = painter.rect();
    painter.fillRect(rect, Drawing::color({colors.canvas()}));
    painter.fillRect(QRectF(0, rect.height() - footerHeight, rect.width(), 1),
                     Drawing::color(colors.hairline()));
}

}  // namespace OrvelUI
