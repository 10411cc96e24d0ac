#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelSystem/X11/FakedInput.h"

namespace OrvelSystem {

/// The major opcode of XInput; 0 without XInput 2.2. The server keeps the version of a client's
/// first query, so everything on one connection must ask for the same one.
std::uint8_t xinputOpcode(xcb_connection_t* connection);

/// The input devices behind the server's core keyboard and pointer, held by XInput 2 grabs of each
/// device. Such a grab succeeds while another client holds the core keyboard or pointer, and takes
/// the device away from that client. A held device is detached from the core keyboard or pointer:
/// the cursor does not move, and keys arrive only as events of the device (`keyOf`).
///
/// Works on the given connection only and needs no toolkit. Without XInput 2.2 or XTEST, no device
/// can be held.
class InputDevices {
  public:
    /// `root` is the root window of the screen. The connection must outlive the object.
    InputDevices(xcb_connection_t* connection, xcb_window_t root);
    InputDevices(const InputDevices&) = delete;
    InputDevices& operator=(const InputDevices&) = delete;

    bool areAvailable() const { return opcode_ != 0 && fake_.isAvailable(); }
    /// Works on the devices that are not held.
    FakedInput& fake() { return fake_; }

    /// Grabs every hardware device. Releases the pressed keys on the core keyboard, since their
    /// real releases will no longer reach it. The XTEST devices stay attached for `fake`.
    void take();
    /// Grabs the XTEST devices as well; from then on, nothing reaches the core keyboard.
    void takeXTest();
    /// Grabs the held devices again, and hardware devices that have been added. If another client
    /// attaches a held device to a keyboard or pointer, its events also go there until it is
    /// grabbed again.
    void takeAgain();
    /// Grabs every hardware device that is not attached to the core keyboard and pointer, since a
    /// core grab does not receive its events. Releases held devices that are attached again. False
    /// if there is no device to grab.
    bool takeStrays();
    /// Whether a keyboard is held. False also if another client's device grabs hold all of them.
    bool holdKeyboard() const { return holdsKeyboard_; }
    bool holdAny() const { return !held_.empty(); }
    /// Ends the grabs of the held devices. The X server crashes when the grab of a disabled device
    /// ends, and all devices are disabled while another terminal is on the screen. Such a device
    /// stays grabbed until `releaseLate` finds it enabled.
    void release();
    void releaseLate();
    /// Like `release`, but `keyOf` still accepts keys that are on their way, until
    /// `forgetAttached`.
    void attach();
    void forgetAttached() { attached_.clear(); }
    /// Starts or ends passive grabs of every key and button of each device. They apply while no
    /// client has grabbed the device itself, and receive a key even if another client has grabbed
    /// the core keyboard. Only one client at a time can have them.
    void grabPassively(bool grab);
    /// Ends the passive grabs of the XTEST devices alone, so that faked input reaches the core
    /// devices. `grabPassively(true)` starts them again.
    void letFakedInputPass();

    /// Device IDs of all keyboards, including the XTEST keyboard. Empty without XInput 2.2.
    std::vector<std::uint16_t> keyboards() const;
    /// Ends the active grab that a passive grab has started, which attaches the keyboard again.
    void letGo(std::uint16_t keyboard);
    /// The major opcode of XInput; 0 without XInput 2.2.
    std::uint8_t opcode() const { return opcode_; }

    struct Key {
        bool isPress = false;
        xcb_keycode_t code = 0;
        xcb_timestamp_t time = 0;
        /// Modifiers and layout group in the format of a core key event.
        std::uint16_t state = 0;
    };
    /// The key that the event reports if it comes from a held device; `nullopt` otherwise.
    std::optional<Key> keyOf(const xcb_generic_event_t& event) const;

    /// Selects events for devices that are added, removed or attached elsewhere.
    void watchHierarchy();
    bool isHierarchyChange(const xcb_generic_event_t& event) const;

  private:
    enum class Kind { hardware, xtest };
    struct Device {
        std::uint16_t id;
        bool isKeyboard;
        Kind kind;
        bool isEnabled;
        bool isAttachedToCore;  // false for a floating device and for one of another master
    };

    std::vector<Device> list() const;
    bool isHeld(std::uint16_t device) const;
    void grab(const std::vector<Device>& devices);
    void ungrab(std::uint16_t device);
    void ungrabPassively(std::uint16_t device, bool isKeyboard);
    bool isGeneric(const xcb_generic_event_t& event, std::uint16_t type) const;

    xcb_connection_t* connection_;
    xcb_window_t root_;
    std::uint8_t opcode_ = 0;
    FakedInput fake_;
    bool holdsKeyboard_ = false;
    std::vector<std::uint16_t> held_;
    std::vector<std::uint16_t> attached_;  // released lately
    std::vector<std::uint16_t> late_;      // to be released as soon as they are enabled
    struct PassiveGrab {
        std::uint16_t device;
        bool isKeyboard;
    };
    std::vector<PassiveGrab> passive_;
};

}  // namespace OrvelSystem
