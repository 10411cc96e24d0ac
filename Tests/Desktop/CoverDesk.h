#pragma once

#include "LockDesk.h"

namespace DesktopTest {

/// A desktop for tests of covers, with two displays by default. Each app is a separate process that
/// paints every pixel in one of two colours, which nothing else on the screen uses.
class CoverDesk {
  public:
    struct App {
        std::string name;
        Colour one;
        Colour other;
        Process* process = nullptr;
        std::vector<xcb_window_t> windows;
    };

    explicit CoverDesk(const Desktop::Options& options = Desktop::twoDisplays());

    Desktop desktop;
    Screen& screen() { return desktop.screen(); }
    Karvo& karvo() { return *karvo_; }
    /// Call before `start`.
    void addPortal();
    Portal& portal() { return *portal_; }

    /// Starts an app with these windows and waits until the last one is visible. Throws if it does
    /// not appear.
    App& addApp(const std::string& name, Colour one, Colour other,
                const std::vector<Area>& windows);
    /// Returns the standard apps, which the first call starts: `pink` has two windows on the left
    /// display, the second in front of a part of the first; `blue` has one window there.
    App& pink();
    App& blue();
    /// Starts the program with these private apps and waits until it is ready.
    void start(const std::vector<std::string>& privateApps = {},
               const Karvo::Options& options = {});

    void activate(const App& app, std::size_t window = 0);
    /// Presses the shortcut that locks the front app, and waits until nothing of `app` is visible.
    bool lock(const App& app);
    /// The number of key presses that the app has received.
    int keys(const App& app);

    /// Share of the area's pixels in the app's colours, 0 to 1.
    double shown(const App& app, Area area);
    /// Whether no pixel of the app is on the screen.
    bool isHidden(const App& app);
    /// Whether the window is visible, except for a part that another window may hide.
    bool isClear(const App& app, std::size_t window = 0);
    Area areaOf(const App& app, std::size_t window = 0);

    /// Waits until the badge in the middle of a window contains these words.
    bool badgeSays(const App& app, std::string_view words, std::size_t window = 0);

  private:
    std::map<std::string, App> apps_;
    std::unique_ptr<Portal> portal_;
    std::unique_ptr<Karvo> karvo_;
};

}  // namespace DesktopTest
