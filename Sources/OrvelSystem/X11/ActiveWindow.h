#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>

#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

/// The window that the window manager calls active, followed by its announcements. Main thread
/// only.
class ActiveWindow {
  public:
    struct App {
        std::int64_t pid = 0;  ///< 0 when nobody knows it.
        xcb_window_t window = 0;
    };

    static ActiveWindow& shared();

    /// Nothing while no window is active.
    std::optional<App> current();
    /// The same as last announced, without asking the server.
    std::optional<App> known() const { return app_; }
    /// The newest window of another program to have been active, as long as it can be seen: what
    /// was in front, also once an overlay has taken the focus from it.
    std::optional<App> lastOfOthers();

    /// Whether the keyboard is with a window of this program, managed or not. Asks the server.
    bool isOurs() const;

    /// Gives a window the focus and the top, through the window manager where there is one.
    void activate(xcb_window_t window);

    /// `changed` hears of each newly active window until the token is dropped.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void(const App&)> changed);

  private:
    ActiveWindow();
    void read();
    void announce(const App& app);
    void focusLost(const xcb_focus_out_event_t& event);

    xcb_atom_t property_;
    std::optional<App> app_;
    xcb_window_t lastOfOthers_ = 0;
    X11::Subscription events_;
    std::list<std::weak_ptr<std::function<void(const App&)>>> observers_;
};

/// The process that owns a window: what the X server knows of the connection, else what the window
/// says of itself; 0 when neither tells.
std::int64_t processOf(xcb_window_t window);

}  // namespace OrvelSystem
