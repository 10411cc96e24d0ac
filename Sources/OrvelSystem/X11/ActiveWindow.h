#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

/// The active window, as the window manager reports it. Without a window manager, the top-level
/// window with the keyboard focus. Main thread only.
class ActiveWindow {
  public:
    struct App {
        std::int64_t pid = 0;  // 0 if unknown
        xcb_window_t window = 0;
        bool operator==(const App&) const = default;
    };

    static ActiveWindow& shared();

    /// `nullopt` while no window is active. Asks the server. Observers hear of a change in a later
    /// turn of the loop, never inside this call.
    std::optional<App> current();
    /// The result of the last read, without asking the server.
    std::optional<App> known() const { return app_; }
    /// The window of another program that was active most recently, even if an overlay has taken
    /// the focus since. `nullopt` if that window is no longer viewable.
    std::optional<App> lastOfOthers();

    /// Whether a window of this program, managed or not, has the keyboard focus. Asks the server.
    bool isOurs() const;

    /// Raises and focuses a window, through the window manager if there is one.
    void activate(xcb_window_t window);

    /// Calls `changed` each time a window becomes active, and `none` when no window is active any
    /// more, until the token is destroyed.
    [[nodiscard]] OrvelCore::Subscription observe(
        std::function<void(const App&)> changed, std::function<void()> none = [] {});

  private:
    struct Observer {
        std::function<void(const App&)> changed;
        std::function<void()> none;
    };

    ActiveWindow();
    /// Returns whether the active window has changed.
    bool read();
    void announce();
    void focusLost(const xcb_focus_out_event_t& event);

    xcb_atom_t property_;
    std::optional<App> app_;
    xcb_window_t lastOfOthers_ = 0;
    bool isToAnnounce_ = false;
    OrvelCore::Subscription events_;
    OrvelCore::WeakList<Observer> observers_;
};

/// The process that owns a window, according to the X server, else according to the window's
/// `_NET_WM_PID`; 0 if neither is known.
std::int64_t processOf(xcb_window_t window);

}  // namespace OrvelSystem
