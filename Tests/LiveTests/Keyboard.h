#pragma once

#include <xcb/xcb.h>

#include "OrvelSystem/HotkeyCenter.h"
#include "OrvelSystem/X11/X11Hotkeys.h"

#include "Live.h"
#include "Support/Prelude.h"

/// X keycodes of the keys that the tests press.
namespace Key {
constexpr xcb_keycode_t esc = 9, q = 24, t = 28, enter = 36, leftControl = 37, d = 40, k = 45,
                        l = 46, leftShift = 50, b = 56, leftAlt = 64, capsLock = 66, numLock = 77,
                        keypad7 = 79, f12 = 96, rightAlt = 108, home = 110, deleteForward = 119,
                        leftSuper = 133, rightSuper = 134;
}

/// The X server's keyboard as a person and another program have it, on a connection of its own.
class Keyboard {
  public:
    explicit Keyboard(const std::string& display);
    ~Keyboard();
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    void down(xcb_keycode_t key);
    void up(xcb_keycode_t key);
    /// Down in this order, up in the reverse one.
    void press(std::initializer_list<xcb_keycode_t> keys);
    /// Modifier bits and the layout, as events carry them.
    std::uint16_t state();

    /// A passive grab by this other program; false when it is refused.
    bool grabKey(xcb_keycode_t key, std::uint16_t modifiers);
    /// Whether nobody else has this grab; keeps none.
    bool couldGrabKey(xcb_keycode_t key, std::uint16_t modifiers);
    void ungrabKey(xcb_keycode_t key, std::uint16_t modifiers);
    /// How often the grabs have brought this program a key.
    int heard();
    /// Whether nobody holds the keyboard.
    bool isFree();
    void focus(xcb_window_t window);
    /// Lets each of Mod1 to Mod5 have the one key at its index.
    void setModifiers(const xcb_keycode_t (&keys)[5]);

  private:
    void fake(std::uint8_t type, xcb_keycode_t key);

    xcb_connection_t* connection_;
    xcb_window_t root_;
    int heard_ = 0;
};

/// Starts from the plain US layout with no lock on.
class HotkeyDesktopTest : public LiveTest {
  protected:
    HotkeyDesktopTest();
    ~HotkeyDesktopTest() override;

    /// Runs a program of the X server's keyboard tools against it.
    static std::string runTool(const std::vector<std::string>& arguments);
    static void setLayout(std::initializer_list<std::string> arguments);

    /// Until all that has been typed so far has reached us: events come in order.
    void settle();

    static OrvelCore::Shortcut shortcut(std::uint32_t keyCode, std::int64_t modifiers) {
        return {keyCode, "?", {modifiers}};
    }

    Keyboard keyboard{display()};
    OrvelSystem::X11Hotkeys platform;
    OrvelSystem::HotkeyCenter center{platform};
    int fired = 0;

    std::optional<std::uint32_t> add(const OrvelCore::Shortcut& shortcut) {
        return center.registerHotkey(shortcut, [this] { ++fired; });
    }
    /// How often a registered shortcut fires on these keys.
    int firedBy(std::initializer_list<xcb_keycode_t> keys);
    /// Whether it fires no more for as long as a held key takes to repeat some times.
    bool staysFired(int times);

  private:
    int settled_ = 0;
};

/// Counts the presses of a key that reach us, repeats included.
class KeyPresses {
  public:
    explicit KeyPresses(xcb_keycode_t key);
    int count() const { return count_; }

  private:
    int count_ = 0;
    OrvelSystem::X11::Subscription events_;
};
