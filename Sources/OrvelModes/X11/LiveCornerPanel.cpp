#include <cmath>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/X11/PanelStack.h"
#include "OrvelModes/Blur/HotCornerController.h"
#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelModes {

using OrvelBlur::PanelStack;
using OrvelSystem::X11;

namespace {

/// An input-only window, which is invisible but detects the pointer.
///
/// It reacts when the pointer moves, but not when windows appear or disappear over a resting
/// pointer: the action covers the corner, and would be triggered again when its cover goes.
class LiveCornerPanel final : public CornerPanel {
  public:
    LiveCornerPanel() : window_(xcb_generate_id(X11::shared().connection())) {
        auto& x11 = X11::shared();
        const std::uint32_t values[] = {1,
                                        XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW};
        xcb_create_window(x11.connection(), 0, window_, x11.root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        PanelStack::shared().add(window_, OrvelBlur::WindowLevel::hotCorner);
        events_ = x11.onEvent([this](const auto& event) { handle(event); });
    }

    ~LiveCornerPanel() override {
        PanelStack::shared().remove(window_);
        xcb_destroy_window(X11::shared().connection(), window_);
        X11::shared().flush();
    }

    void place(const OrvelCore::Rect& rect) override {
        rect_ = rect;
        isInside_ = rect.contains(OrvelSystem::PointerState::location());
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
        const auto type = event.response_type;
        switch (type) {
            case XCB_ENTER_NOTIFY:
            case XCB_LEAVE_NOTIFY: {
                const auto& crossing = reinterpret_cast<const xcb_enter_notify_event_t&>(event);
                // Neither a grab of the pointer nor a cover counts as leaving.
                if (crossing.event == window_ && crossing.mode == XCB_NOTIFY_MODE_NORMAL)
                    crossed(type == XCB_ENTER_NOTIFY,
                            {double(crossing.root_x), double(crossing.root_y)});
                break;
            }
            // If the pointer left while a window covered the panel, this detects it when that
            // window goes.
            case XCB_UNMAP_NOTIFY:
            case XCB_DESTROY_NOTIFY:
            case XCB_CONFIGURE_NOTIFY:
                if (isInside_) crossed(false, OrvelSystem::PointerState::location());
                break;
            default:
                break;
        }
    }

    void crossed(bool inwards, OrvelCore::Point point) {
        if (isInside_ == inwards || rect_.contains(point) != inwards) return;
        isInside_ = inwards;
        const auto call = inwards ? onEnter : onExit;
        call();
    }

    xcb_window_t window_;
    OrvelCore::Rect rect_;
    bool isInside_ = false;
    OrvelCore::Subscription events_;
};

}  // namespace

std::unique_ptr<CornerPanel> makeLiveCornerPanel() {
    return std::make_unique<LiveCornerPanel>();
}

}  // namespace OrvelModes
