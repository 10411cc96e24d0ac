#include "OrvelSystem/X11/PointerPresses.h"

#include <xcb/xinput.h>

#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem::PointerPresses {

namespace {

constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;

/// Selects on the master devices: Qt selects on all devices, and one selection would replace the
/// other.
void select(std::uint32_t mask) {
    const auto& x11 = X11::shared();
    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, mask};
    xcb_input_xi_select_events(x11.connection(), x11.root(), 1, &selection.head);
    x11.flush();
}

class Watch {
  public:
    Watch(std::uint8_t extension, std::function<void(OrvelCore::Point)> pressed)
        : events_(X11::shared().onEvent([extension, pressed = std::move(pressed)](
                                            const xcb_generic_event_t& event) {
              if (event.response_type != XCB_GE_GENERIC) return;
              const auto& press =
                  reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
              if (press.extension != extension || press.event_type != XCB_INPUT_RAW_BUTTON_PRESS)
                  return;
              // A raw event contains the button but not the position.
              if (press.detail == leftButton || press.detail == rightButton)
                  pressed(PointerState::location());
          })) {
        if (count()++ == 0) select(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
    }
    ~Watch() {
        if (--count() == 0) select(0);
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

  private:
    static int& count() {
        static int watches = 0;
        return watches;
    }

    OrvelCore::Subscription events_;
};

}  // namespace

OrvelCore::Subscription observe(std::function<void(OrvelCore::Point)> pressed) {
    const auto* const extension = xcb_get_extension_data(X11::shared().connection(), &xcb_input_id);
    if (extension == nullptr || extension->present == 0) return nullptr;
    return std::make_shared<Watch>(extension->major_opcode, std::move(pressed));
}

}  // namespace OrvelSystem::PointerPresses
