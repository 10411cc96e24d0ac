#pragma once

#include <xcb/xcb.h>

namespace OrvelSystem {

/// A passive grab of every key and button with every modifier on the root window. It receives only
/// what no active grab takes, so it never disturbs a locker that has grabbed the keyboard. The
/// newer of two passive grabs has precedence, so renew it after a window manager has grabbed its
/// keys again. Only one client at a time can have it.
class InputNet {
  public:
    InputNet(xcb_connection_t* connection, xcb_window_t root);
    InputNet(const InputNet&) = delete;
    InputNet& operator=(const InputNet&) = delete;

    /// True if the grab is in place, including one from an earlier call. False if another client
    /// has it, or without XInput 2.2.
    bool putUp();
    void takeDown();
    bool isUp() const { return isUp_; }
    /// Makes the grab the newest again, if it is in place.
    void renew();

  private:
    xcb_connection_t* connection_;
    xcb_window_t root_;
    bool hasXInput_ = false;
    bool isUp_ = false;
};

}  // namespace OrvelSystem
