#include <cmath>

#include "OrvelBlur/Linux/PanelStack.h"
#include "OrvelModes/HotCornerController.h"
#include "OrvelSystem/Linux/X11.h"

namespace OrvelModes {

using OrvelBlur::PanelStack;
using OrvelSystem::X11;

namespace {

/// Above everything but what hides the screen.
constexpr int cornerLevel = 998;

/// An input-only window: nothing of it can be seen, and it feels the pointer all the same.
class LiveCornerPanel final : public CornerPanel {
  public:
    LiveCornerPanel() : window_(xcb_generate_id(X11::shared().connection())) {
        auto& x11 = X11::shared();
        const std::uint32_t values[] = {1,
                                        XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW};
        xcb_create_window(x11.connection(), 0, window_, x11.root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        PanelStack::shared().add(window_, cornerLevel);
        events_ = x11.onEvent([this](const auto& event) { handle(event); });
    }

    ~LiveCornerPanel() override {
        PanelStack::shared().remove(window_);
        xcb_destroy_window(X11::shared().connection(), window_);
        X11::shared().flush();
    }

    void place(const OrvelCore::Rect& rect) override {
        const std::uint32_t position[] = {static_cast<std::uint32_t>(std::lround(rect.x)),
                                          static_cast<std::uint32_t>(std::lround(rect.y))};
        xcb_configure_window(X11::shared().connection(), window_,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, position);
        xcb_map_window(X11::shared().connection(), window_);
        PanelStack::shared().orderFront(window_);
        X11::shared().flush();
    }

  private:
    void handle(const xcb_generic_event_t& event) {
        const auto type = event.response_type & 0x7F;
        if (type != XCB_ENTER_NOTIFY && type != XCB_LEAVE_NOTIFY) return;
        const auto& crossing = reinterpret_cast<const xcb_enter_notify_event_t&>(event);
        // A grab of the pointer is no way of leaving.
        if (crossing.event != window_ || crossing.mode != XCB_NOTIFY_MODE_NORMAL) return;
        const auto call = type == XCB_ENTER_NOTIFY ? onEnter : onExit;
        call();
    }

    xcb_window_t window_;
    X11::Subscription events_;
};

}  // namespace

std::unique_ptr<CornerPanel> makeLiveCornerPanel() {
    return std::make_unique<LiveCornerPanel>();
}

}  // namespace OrvelModes
