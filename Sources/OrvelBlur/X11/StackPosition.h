#pragma once

#include <functional>

#include "OrvelBlur/X11/CompositeOverlay.h"
#include "OrvelBlur/X11/PanelWindow.h"
#include "OrvelCore/WeakList.h"

namespace OrvelBlur {

/// The position of one panel in the stack of windows: it is in `PanelStack` as long as this object
/// exists, and below the composite overlay if it is of the lock's level. An order is kept until
/// `apply`, because a panel must not come in before it is drawn. Main thread only.
class StackPosition {
  public:
    /// `window` must outlive this object. `draw` draws the whole panel and is called only while the
    /// window is mapped.
    StackPosition(const PanelWindow& window, std::function<void()> draw);
    ~StackPosition();
    StackPosition(const StackPosition&) = delete;
    StackPosition& operator=(const StackPosition&) = delete;

    void orderFront() { next_ = Order::front; }
    /// `sibling` is any child of the root. If there is no such window, the order does not change.
    void orderAbove(xcb_window_t sibling);
    void orderBelow(xcb_window_t sibling);
    /// Gives the last order again, after another client has changed it.
    void orderAgain() { next_ = last_; }
    void cancelOrder() { next_ = Order::none; }
    bool hasOrder() const { return next_ != Order::none; }
    /// Carries out the order, if there is one.
    void apply();
    /// Call after the window was unmapped.
    void orderOut();
    /// Call after the mapped window was moved or resized. `before` is its former frame, in root
    /// coordinates, in pixels.
    void moved(const PixelRect& before);
    /// Call after the window was replaced.
    void replaced();

    /// Whether the composite overlay is above the panel now. Then what the panel draws into its
    /// window is not visible.
    bool isUnderCompositeOverlay() const {
        return compositeOverlay_ && CompositeOverlay::shared().isHeld();
    }

  private:
    enum class Order { none, front, above, below };

    void enter();

    const PanelWindow& window_;
    std::function<void()> draw_;
    xcb_window_t entered_ = XCB_NONE;  // the window as `PanelStack` knows it
    Order next_ = Order::none;
    Order last_ = Order::front;
    xcb_window_t sibling_ = XCB_NONE;
    OrvelCore::Subscription compositeOverlay_;  // set for a panel of the lock's level
};

}  // namespace OrvelBlur
