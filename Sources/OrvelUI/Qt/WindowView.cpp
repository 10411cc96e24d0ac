#include "OrvelUI/Qt/WindowView.h"

#include <QTimer>
#include <utility>

#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Qt/FormAccessibility.h"

namespace OrvelUI {

WindowView::WindowView() {
    installFormAccessibility();
    appearance_ = OrvelSystem::Appearance::shared().observe([this] { scheduleRefresh(); });
}

void WindowView::follow(std::vector<OrvelCore::Subscription> observations) {
    observations_ = std::move(observations);
}

FormStyle WindowView::style() const {
    return fixedStyle_ ? *fixedStyle_ : FormStyle::current();
}

void WindowView::fixStyle(const FormStyle& style) {
    fixedStyle_ = style;
    refresh();
}

void WindowView::scheduleRefresh() {
    if (std::exchange(isRefreshDue_, true)) return;
    QTimer::singleShot(0, this, [this] {
        if (isRefreshDue_) refresh();
    });
}

void WindowView::refresh() {
    isRefreshDue_ = false;
    if (isLeft_) return;
    showModel(style());
    update();
}

void WindowView::leaveModel() {
    isLeft_ = true;
    observations_.clear();
}

}  // namespace OrvelUI
