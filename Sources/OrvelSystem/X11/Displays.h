#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <vector>

#include "OrvelSystem/X11/Monitors.h"

namespace OrvelSystem {

/// The monitors of the X screen, as RandR reports them. Main thread only.
class Displays {
  public:
    /// `id` is the atom of the monitor's name, so it does not change while the monitor is
    /// connected.
    using Display = Monitor;

    static Displays& shared();

    /// The primary monitor first. Monitors that lie within another one (mirrors) are omitted.
    /// Without RandR 1.5, the whole screen is one display.
    std::vector<Display> list() const;
    /// The frames of `list`, in pixels of the root window.
    static std::vector<OrvelCore::Rect> frames();
    /// The same as last reported by an event, without asking the server. `onChanged` is called
    /// after each change.
    static std::vector<OrvelCore::Rect> known();

    /// Called after each change of `list`. It has one owner: the program's session events.
    std::function<void()> onChanged = [] {};

  private:
    Displays();
    void look();

    // Used for events only. On its own connection, Qt discards an event of the root window's
    // configuration if one of another window follows.
    xcb_connection_t* connection_;
    bool hasMonitors_ = false;
    std::vector<Display> known_;
    std::unique_ptr<QSocketNotifier> events_;
};

}  // namespace OrvelSystem
