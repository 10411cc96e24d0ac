#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

namespace OrvelSystem {

/// The input devices behind the server's one keyboard and one pointer, held by XInput 2 grabs of
/// each device. Such a grab succeeds while another client holds the core keyboard or pointer, and
/// takes the device away from that client. A held device is detached from the core keyboard or
/// pointer: the cursor stands still, and keys come as events of the device alone (`keyOf`).
///
/// Works on the given connection only and needs no toolkit. Without XInput 2.2 or XTEST there are
/// no devices to take.
class InputDevices {
  public:
    /// `root` is the root window of the screen. The connection outlives the object.
    InputDevices(xcb_connection_t* connection, xcb_window_t root);
    InputDevices(const InputDevices&) = delete;
    InputDevices& operator=(const InputDevices&) = delete;

    bool areAvailable() const { return opcode_ != 0 && hasXTest_; }

    /// Grabs every hardware device for `window`, which must be viewable, and releases on the core
    /// keyboard the keys that are down, since their releases will no longer reach it. The XTEST
    /// devices stay attached for `pressEscape` and `releaseButtons`.
    void take(xcb_window_t window);
    /// The XTEST devices as well: from then on nothing reaches the core keyboard.
    void takeXTest(xcb_window_t window);
    /// The same devices again, and those that have come since: one that another client attaches to
    /// a keyboard or pointer is heard there as well until it is grabbed anew.
    void takeAgain(xcb_window_t window);
    /// Grabs every hardware device that is not attached to the core keyboard and pointer, since a
    /// core grab does not hear it, and lets those go that are attached again. False when there is
    /// none to hold.
    bool takeStrays(xcb_window_t window);
    /// Whether a keyboard is held. False also when another client's device grab has all of them.
    bool holdKeyboard() const { return holdsKeyboard_; }
    bool holdAny() const { return !held_.empty(); }
    void release();
    /// Grabs every key and button of each device, or no longer, for as long as no client has
    /// grabbed the device itself. Such a grab takes the key from a client that has grabbed the
    /// keyboard. One client at a time can have it.
    void grabPassively(bool grab);

    /// Taps Escape on the core keyboard, which closes the menu of another program.
    void pressEscape();
    /// Releases on the core pointer the buttons that are down, which ends a drag.
    void releaseButtons();

    /// Numbers of all keyboards, the XTEST one included.
    std::vector<std::uint16_t> keyboards() const;
    /// Ends a passive grab that has detached the keyboard.
    void letGo(std::uint16_t keyboard);
    /// Lets the core keyboard see a key go down and up that means nothing to any program: a desktop
    /// opens its menu when Super goes up and no other key went down since.
    void tapNeutralKey();
    /// Releases the key, or all that are down, on the core keyboard.
    void releaseKey(xcb_keycode_t code);
    void releaseKeys();
    /// The major opcode of XInput; 0 without XInput 2.2.
    std::uint8_t opcode() const { return opcode_; }

    struct Key {
        bool isPress = false;
        xcb_keycode_t code = 0;
        xcb_timestamp_t time = 0;
        /// Modifiers and layout group as in a core key event.
        std::uint16_t state = 0;
    };
    /// What the event says if it is a key of a held device; nothing otherwise.
    std::optional<Key> keyOf(const xcb_generic_event_t& event) const;

    /// Asks the server to tell of devices that come, go or are attached elsewhere.
    void watchHierarchy();
    bool isHierarchyChange(const xcb_generic_event_t& event) const;

  private:
    enum class Kind { hardware, xtest };
    struct Device {
        std::uint16_t id;
        bool isKeyboard;
        Kind kind;
        bool isAttachedToCore;  // false for a floating device and for one of another master
    };

    std::vector<Device> list() const;
    void grab(const Device& device, xcb_window_t window);
    void ungrab(std::uint16_t device);
    void fake(std::uint8_t type, std::uint8_t detail);
    void tap(std::uint32_t keysym);
    bool isGeneric(const xcb_generic_event_t& event, std::uint16_t type) const;

    xcb_connection_t* connection_;
    xcb_window_t root_;
    std::uint8_t opcode_ = 0;
    bool hasXTest_ = false;
    bool holdsKeyboard_ = false;
    std::vector<std::uint16_t> held_;
    struct PassiveGrab {
        std::uint16_t device;
        bool isKeyboard;
    };
    std::vector<PassiveGrab> passive_;
};

/// A passive grab of every key and button with every modifier on the root window. It takes what no
/// active grab takes, so it never disturbs a locker that has grabbed the keyboard. Of two passive
/// grabs the newer one has precedence, so it is to be renewed after window managers have grabbed
/// their keys anew. One client at a time can have it.
class InputNet {
  public:
    InputNet(xcb_connection_t* connection, xcb_window_t root);
    InputNet(const InputNet&) = delete;
    InputNet& operator=(const InputNet&) = delete;

    /// True when it is up, also when it was already. False when another client has it, or without
    /// XInput 2.2.
    bool putUp();
    void takeDown();
    bool isUp() const { return isUp_; }
    /// Makes it the newest again, if it is up.
    void renew();

  private:
    xcb_connection_t* connection_;
    xcb_window_t root_;
    bool hasXInput_ = false;
    bool isUp_ = false;
};

}  // namespace OrvelSystem
