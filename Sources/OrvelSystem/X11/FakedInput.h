#pragma once

#include <cstdint>

#include <xcb/xcb.h>

namespace OrvelSystem {

/// Keys and buttons that this program fakes on the core keyboard and pointer with XTEST. They take
/// effect only while the XTEST devices are attached there. Without XTEST nothing happens. Works on
/// the given connection only and needs no toolkit.
class FakedInput {
  public:
    /// `root` is the root window of the screen. The connection must outlive the object.
    FakedInput(xcb_connection_t* connection, xcb_window_t root);

    bool isAvailable() const { return isAvailable_; }

    /// Taps Escape, which closes the menu of another program.
    void pressEscape();
    /// Presses and releases a key that no program interprets. A desktop opens its menu when Super
    /// is released and no other key was pressed in between.
    void tapNeutralKey();
    /// Releases the key, or all pressed keys.
    void releaseKey(xcb_keycode_t code);
    void releaseKeys();
    /// Releases the pressed buttons, which ends a drag.
    void releaseButtons();

  private:
    void fake(std::uint8_t type, std::uint8_t detail);
    void tap(std::uint32_t keysym);

    xcb_connection_t* connection_;
    xcb_window_t root_;
    bool isAvailable_;
};

}  // namespace OrvelSystem
