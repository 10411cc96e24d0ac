#pragma once

#include "LockDesk.h"

namespace DesktopTest {

/// A desktop, of two displays where nothing else is said, with apps of their own processes, whose
/// every pixel has one of two colours that nothing else has.
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
    /// Before the program starts.
    void addPortal();
    Portal& portal() { return *portal_; }

    /// Starts an app with these windows and waits until they are clear to see.
    App& addApp(const std::string& name, Colour one, Colour other,
                const std::vector<Area>& windows);
    /// Two of them, on the left display, the second in front of a part of the first.
    App& pink();
    App& blue();
    /// Starts the program with these apps private.
    void start(const std::vector<std::string>& privateApps = {},
               const Karvo::Options& options = {});

    void activate(const App& app, std::size_t window = 0);
    /// By the shortcut for the app in front, and waits until nothing of it can be seen.
    bool lock(const App& app);
    /// Keys that have reached it.
    int keys(const App& app);

    /// Share of the area's pixels in the app's colours.
    double shown(const App& app, Area area);
    /// Whether not one pixel of it is on the screen.
    bool isHidden(const App& app);
    /// Whether a window is there as it is, but for a part that another one may cover.
    bool isClear(const App& app, std::size_t window = 0);
    Area areaOf(const App& app, std::size_t window = 0);

    /// The words on the badge in the middle of a window.
    bool badgeSays(const App& app, std::string_view words, std::size_t window = 0);

  private:
    std::map<std::string, App> apps_;
    std::unique_ptr<Portal> portal_;
    std::unique_ptr<Karvo> karvo_;
};

}  // namespace DesktopTest
