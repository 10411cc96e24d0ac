#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

/// A window of another program, as that program knows it: without the manager's frame.
struct ClientWindow {
    xcb_window_t window = 0;
    std::int64_t pid = 0;
    /// None of those that make up the desktop itself: background, panels, notifications.
    bool isOrdinary = true;
    bool isMinimised = false;
};

/// The windows of other programs that the window manager lists, minimised ones included. Without
/// such a manager, those on the screen that are no menus or the like. Main thread only.
class ClientWindows {
  public:
    /// `changed` is called when the list may have changed, `unhidden` when a window is minimised
    /// no more.
    ClientWindows(std::function<void()> changed, std::function<void()> unhidden);

    /// As of the last `read`, in the order in which they were opened.
    const std::vector<ClientWindow>& all() const { return clients_; }
    /// The ordinary ones of a process.
    std::vector<xcb_window_t> of(std::int64_t pid) const;
    void read();
    /// To be found out anew, by the next `read`.
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
    xcb_window_t manager_ = 0;  // its proof
    std::vector<ClientWindow> clients_;
    X11::Subscription events_;
};

}  // namespace OrvelSystem
