#pragma once

#include <functional>

namespace OrvelModes {

/// An ordinary window of the program. Closing hides it; it can be shown again. Main thread only.
class AppWindow {
  public:
    enum class Level { normal, floating };

    AppWindow() = default;
    AppWindow(const AppWindow&) = delete;
    AppWindow& operator=(const AppWindow&) = delete;
    virtual ~AppWindow() = default;

    /// Centres the window on the display.
    virtual void center() = 0;
    virtual void makeKeyAndOrderFront() = 0;
    /// Orders the window to the front even if another app is active.
    virtual void orderFrontRegardless() = 0;
    virtual void setLevel(Level level) = 0;
    /// False while it is closed.
    virtual bool isVisible() const = 0;
    virtual void close() = 0;

    /// Called at each closing, by the user or by `close`.
    std::function<void()> onWillClose = [] {};
};

}  // namespace OrvelModes
