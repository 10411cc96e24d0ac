#include "OrvelBlur/X11/StackPosition.h"

#include <utility>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/X11/PanelStack.h"

namespace OrvelBlur {

StackPosition::StackPosition(const PanelWindow& window, std::function<void()> draw)
    : window_(window), draw_(std::move(draw)) {
    enter();
}

StackPosition::~StackPosition() {
    PanelStack::shared().remove(entered_);
}

void StackPosition::enter() {
    entered_ = window_.id();
    PanelStack::shared().add(entered_, window_.level(), true);
    if (window_.level() < WindowLevel::lock) return;
    compositeOverlay_ = CompositeOverlay::shared().subscribe(
        {.window = entered_,
         .frame = [this] { return window_.isMapped() ? window_.frame() : PixelRect{}; },
         .draw =
             [this] {
                 if (window_.isMapped()) draw_();
             }});
}

void StackPosition::replaced() {
    PanelStack::shared().remove(entered_);
    enter();
}

void StackPosition::orderAbove(xcb_window_t sibling) {
    next_ = Order::above;
    sibling_ = sibling;
}

void StackPosition::orderBelow(xcb_window_t sibling) {
    next_ = Order::below;
    sibling_ = sibling;
}

void StackPosition::apply() {
    if (!hasOrder()) return;
    last_ = std::exchange(next_, Order::none);
    auto& stack = PanelStack::shared();
    switch (last_) {
        case Order::none:
            break;
        case Order::front:
            stack.orderFront(window_.id());
            break;
        case Order::above:
            stack.orderAbove(window_.id(), sibling_);
            break;
        case Order::below:
            stack.orderBelow(window_.id(), sibling_);
            break;
    }
}

void StackPosition::orderOut() {
    PanelStack::shared().orderOut(window_.id());
    if (compositeOverlay_) CompositeOverlay::shared().leave(window_.placedFrame());
}

void StackPosition::moved(const PixelRect& before) {
    if (compositeOverlay_) CompositeOverlay::shared().leave(before);
}

}  // namespace OrvelBlur
