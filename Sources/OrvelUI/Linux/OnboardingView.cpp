#include "OrvelUI/Linux/OnboardingView.h"

#include <QScrollBar>
#include <QTimer>

#include "OrvelSystem/Linux/Appearance.h"
#include "OrvelUI/Linux/FormAccessibility.h"

namespace OrvelUI {

namespace {

// Points.
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
    installFormAccessibility();
    form_->setMargins(56, 28, 16);
    form_->setCentred(true);
    observations_ = model.observe([this] { scheduleRefresh(); });
    appearance_ = OrvelSystem::Appearance::shared().observe([this] { scheduleRefresh(); });
    refresh();
}

FormStyle OnboardingView::style() const {
    return fixedStyle_ ? *fixedStyle_ : FormStyle::current();
}

void OnboardingView::fixStyle(const FormStyle& style) {
    fixedStyle_ = style;
    refresh();
}

void OnboardingView::scheduleRefresh() {
    if (std::exchange(isRefreshDue_, true)) return;
    QTimer::singleShot(0, this, [this] {
        if (isRefreshDue_) refresh();
    });
}

void OnboardingView::refresh() {
    isRefreshDue_ = false;
    const auto now = style();
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
    if (shownStep_ != step) {
        form_->verticalScrollBar()->setValue(0);
        // Return leads through the whole guide.
        primary_->setFocus(Qt::OtherFocusReason);
    }
    shownStep_ = step;
    arrangeFooter();
    update();
}

QSize OnboardingView::sizeHint() const {
    return Drawing::scaled({0, 0, width, height}).size();
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
