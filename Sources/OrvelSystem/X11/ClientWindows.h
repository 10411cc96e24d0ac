#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

/// A window of another program, without the window manager's frame.
struct ClientWindow {
    xcb_window_t window = 0;
    std::int64_t pid = 0;
    /// False for windows of the desktop itself: background, panels and notifications.
    bool isOrdinary = true;
    bool isMinimised = false;
};

/// The windows of other programs that the window manager lists, including minimised ones. Without a
/// window manager, the windows on the screen except menus and the like. Main thread only.
class ClientWindows {
  public:
    /// `changed` is called when the list may have changed, `unhidden` when a window is no longer
    /// minimised.
    ClientWindows(std::function<void()> changed, std::function<void()> unhidden);

    /// As of the last `read`. In the order in which they were opened; without a window manager, in
    /// stacking order, bottom first.
    const std::vector<ClientWindow>& all() const { return clients_; }
    /// The ordinary windows of a process.
    std::vector<xcb_window_t> of(std::int64_t pid) const;
    void read();
    /// Discards what is known about a process's windows; the next `read` describes them again.
    void forget(std::int64_t pid);

    void minimise(xcb_window_t window);
    void restore(xcb_window_t window);

  private:
    void handle(const xcb_generic_event_t& event);
    void handleProperty(const xcb_property_notify_event_t& notify);
    void watchManager();
    std::vector<xcb_window_t> windows() const;
    ClientWindow describe(xcb_window_t window) const;

    std::function<void()> changed_;
    std::function<void()> unhidden_;
    xcb_atom_t clientList_;
    xcb_atom_t managerCheck_;
    xcb_atom_t windowState_;
    xcb_window_t manager_ = 0;  // the window that proves its presence; 0 without one
    std::vector<ClientWindow> clients_;
    OrvelCore::Subscription events_;
};

}  // namespace OrvelSystem
