#pragma once

#include <QSocketNotifier>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "OrvelSystem/X11/Monitors.h"

namespace OrvelSystem {

/// The monitors of the X screen, as RandR counts them. Main thread only.
class Displays {
  public:
    /// `id` is the atom of the monitor's name, so that it keeps its number while it stays
    /// connected.
    using Display = Monitor;

    static Displays& shared();

    /// The primary one first. Monitors that lie within another (mirrors) are left out. Without
    /// RandR 1.5 the whole screen is the one display.
    std::vector<Display> list() const;
    /// Their frames alone.
    static std::vector<OrvelCore::Rect> frames();

    /// Called after each change of `list`. One owner: the program's session events.
    std::function<void()> onChanged = [] {};

    /// A monitor that a user defines by hand comes without an event. While the token lives the
    /// list is looked at twice a second as well.
    [[nodiscard]] std::shared_ptr<void> watchClosely();

  private:
    Displays();
    void look();

    // For events only. Qt's drops a change of the root window when one of another window follows.
    xcb_connection_t* connection_;
    bool hasMonitors_ = false;
    std::vector<Display> known_;
    std::unique_ptr<QSocketNotifier> events_;
    QTimer poll_;
    std::weak_ptr<void> close_;
};

}  // namespace OrvelSystem
