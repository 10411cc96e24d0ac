#pragma once

#include <xcb/xcb_keysyms.h>

#include "Image.h"

namespace DesktopTest {

/// A window of another program, on its own X connection. It has one colour, and counts the keys and
/// clicks that it receives.
class SampleWindow {
  public:
    enum class Kind {
        /// Framed and placed by the window manager, if there is one.
        normal,
        /// Override-redirect like a menu or a notification, and mapped on top.
        popup,
        /// The same, and raises itself when it is obscured, as screen lockers do.
        locker,
    };

    SampleWindow(const std::string& display, Area area, Colour colour, Kind kind = Kind::normal,
                 const std::string& title = "Sample");
    ~SampleWindow();
    SampleWindow(const SampleWindow&) = delete;
    SampleWindow& operator=(const SampleWindow&) = delete;

    xcb_window_t id() const { return window_; }
    void map();
    void unmap();
    void raise();
    /// Only for `locker`: reads the events so far.
    void raiseIfObscured() { readEvents(); }
    /// Also grabs the pointer and the keyboard, as an open menu does. `freezes` stops both until
    /// they are released. Returns false if the server refuses.
    bool grab(bool freezes = false);
    void ungrab();
    /// Sets the input focus to itself without the window manager.
    void takeFocus();

    /// The number of presses so far. Escape and keys without a symbol do not count, because a lock
    /// sends them to close a menu.
    int keyPresses();
    int clicks();
    bool hasFocus();

  private:
    void readEvents();

    xcb_connection_t* connection_;
    xcb_key_symbols_t* symbols_;
    xcb_window_t window_ = 0;
    int keyPresses_ = 0;
    int clicks_ = 0;
};

}  // namespace DesktopTest
