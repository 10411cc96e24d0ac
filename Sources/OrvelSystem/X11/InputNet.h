#pragma once

#include <optional>

#include <xcb/xcb.h>

#include "OrvelSystem/X11/RequestRecording.h"

namespace OrvelSystem {

/// A passive grab of every key and button with every modifier on the root window. It receives only
/// what no active grab takes, so it never disturbs a locker that has grabbed the keyboard. Only one
/// client at a time can have it.
///
/// The newer of two passive grabs has precedence. A window manager grabs its keys again when it
/// starts, reads its settings or the keyboard's mapping changes, so the net is renewed whenever
/// another client grabs keys.
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

    /// Starts to notice the grabs of other clients; further calls do nothing. Without the RECORD
    /// extension, the net stays as old as its grab.
    void watchGrabs();
    /// Call `handleGrabs` when it becomes readable; -1 if nothing is noticed.
    int descriptor() const { return recording_ ? recording_->descriptor() : -1; }
    void handleGrabs();

  private:
    xcb_connection_t* connection_;
    xcb_window_t root_;
    bool hasXInput_ = false;
    bool isUp_ = false;
    std::optional<RequestRecording> recording_;
};

}  // namespace OrvelSystem
