#pragma once

#include <xcb/xcb.h>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/HotkeyCenter.h"
#include "OrvelSystem/X11/X11Hotkeys.h"

#include "Live.h"

/// X keycodes of the keys that the tests press.
namespace Key {
constexpr xcb_keycode_t esc = 9, q = 24, t = 28, enter = 36, leftControl = 37, d = 40, k = 45,
                        l = 46, leftShift = 50, b = 56, leftAlt = 64, capsLock = 66, numLock = 77,
                        keypad7 = 79, f12 = 96, rightAlt = 108, home = 110, deleteForward = 119,
                        leftSuper = 133, rightSuper = 134;
}

/// Presses and grabs keys as a user and another program do, on its own X connection.
class Keyboard {
  public:
    explicit Keyboard(const std::string& display);
    ~Keyboard();
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    void down(xcb_keycode_t key);
    void up(xcb_keycode_t key);
    /// Presses the keys in this order and releases them in reverse.
    void press(std::initializer_list<xcb_keycode_t> keys);
    /// Modifier bits and layout in the format of key events.
    std::uint16_t state();

    /// Adds a passive grab of this other program; false if it is refused.
    bool grabKey(xcb_keycode_t key, std::uint16_t modifiers);
    /// Whether the grab is free; releases it again.
    bool couldGrabKey(xcb_keycode_t key, std::uint16_t modifiers);
    void ungrabKey(xcb_keycode_t key, std::uint16_t modifiers);
    /// How many keys this program has received through its grabs.
    int heard();
    void focus(xcb_window_t window);
    /// Assigns to each of Mod1 to Mod5 the key at its index; 0 for none.
    void setModifiers(const xcb_keycode_t (&keys)[5]);

  private:
    void fake(std::uint8_t type, xcb_keycode_t key);

    xcb_connection_t* connection_;
    xcb_window_t root_;
    int heard_ = 0;
};

/// Starts with the plain US layout and with all lock keys off.
class HotkeyDesktopTest : public LiveTest {
  protected:
    HotkeyDesktopTest();
    ~HotkeyDesktopTest() override;

    /// Runs one of the X server's keyboard tools and returns its output.
    static std::string runTool(const std::vector<std::string>& arguments);
    static void setLayout(std::initializer_list<std::string> arguments);

    /// Waits until this program has received all keys typed so far.
    void settle();

    static Shortcut shortcut(std::uint32_t keyCode, std::int64_t modifiers) {
        return {keyCode, "?", {modifiers}};
    }

    Keyboard keyboard{display()};
    X11Hotkeys platform;
    HotkeyCenter center{platform};
    int fired = 0;

    std::optional<std::uint32_t> add(const Shortcut& shortcut) {
        return center.registerHotkey(shortcut, [this] { ++fired; });
    }
    /// Presses the keys and returns how often a registered shortcut has fired.
    int firedBy(std::initializer_list<xcb_keycode_t> keys);
    /// Whether the count stays at `times` for as long as a held key takes to repeat a few times.
    bool staysFired(int times);

  private:
    int settled_ = 0;
};

/// Counts the presses of a key that reach this program, including repeats.
class KeyPresses {
  public:
    explicit KeyPresses(xcb_keycode_t key);
    int count() const { return count_; }

  private:
    int count_ = 0;
    Subscription events_;
};
