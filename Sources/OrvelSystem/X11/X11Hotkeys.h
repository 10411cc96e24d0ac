#pragma once

#include <QTimer>
#include <map>
#include <vector>

#include <xcb/xinput.h>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/HotkeyPlatform.h"
#include "OrvelSystem/X11/InputDevices.h"
#include "OrvelSystem/X11/X11.h"
#include "OrvelSystem/X11/X11KeyMap.h"

namespace OrvelSystem {

/// Global hotkeys as passive key grabs on the root window. A core grab shows whether another
/// program has the combination. Grabs of each keyboard device also fire while another program has
/// grabbed the keyboard, for example for an open menu. The object follows changes of the key map
/// and of the keyboards; a combination that another program has under the new map is tried again at
/// the next change. The destructor releases all hotkeys and must run before the X connection is
/// closed.
class X11Hotkeys final : public HotkeyPlatform {
  public:
    explicit X11Hotkeys(X11& x11 = X11::shared());
    ~X11Hotkeys() override;
    X11Hotkeys(const X11Hotkeys&) = delete;
    X11Hotkeys& operator=(const X11Hotkeys&) = delete;

    void installEventHandler(std::function<void(std::uint32_t number)> pressed) override;
    /// Also refuses a combination that a registration of this object has.
    std::optional<HotkeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                            std::uint32_t number) override;
    void unregisterHotKey(HotkeyRef ref) override;

    /// Enables or disables the device grabs, which are enabled by default. While they are disabled,
    /// another client can grab all keys of a device.
    void setGrabsDevices(bool grabs);

  private:
    struct Grab {
        xcb_keycode_t keycode;
        std::uint8_t modifierBits;
        bool operator==(const Grab&) const = default;
    };
    struct Registration {
        std::uint32_t keyCode;
        OrvelCore::Shortcut::Modifiers modifiers;
        std::uint32_t number;
        std::optional<Grab> grab;  // empty if the combination is not available
        /// Whether the hotkey also fires with Alt, which is pressed while a window manager's
        /// switcher has the keyboard. Only if no other hotkey, of this program or another one, has
        /// that combination.
        bool firesWithAlt = false;
    };

    void handle(const xcb_generic_event_t& event);
    void keyPressed(const xcb_key_press_event_t& event);
    void deviceKeyPressed(const xcb_input_key_press_event_t& event);
    void deviceKeyReleased(const xcb_input_key_press_event_t& event);
    void press(const Grab& grab);
    void followKeyMap();
    /// Sets `grab` if the combination is available.
    void take(Registration& registration);
    void release(Registration& registration);
    bool isRegistered(const Grab& grab) const;
    bool isFree(const Grab& grab);
    /// Renews the device grabs for the current hotkeys and keyboards.
    void grabDevices();

    X11& x11_;
    X11KeyMap map_;
    std::function<void(std::uint32_t)> pressed_;
    std::map<HotkeyRef, Registration> registrations_;
    HotkeyRef nextRef_ = 1;
    xcb_keycode_t releasedKey_ = 0;
    xcb_timestamp_t releasedAt_ = 0;
    InputDevices devices_;
    /// A device grab that was requested.
    struct DeviceGrab {
        std::uint16_t device;
        xcb_keycode_t keycode;
        std::vector<std::uint32_t> modifiers;
    };
    std::vector<DeviceGrab> deviceGrabs_;
    bool grabsDevices_ = true;
    QTimer keyMapChanges_;
    OrvelCore::Subscription events_;
};

}  // namespace OrvelSystem
