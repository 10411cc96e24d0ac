#pragma once

#include <functional>

namespace OrvelModes {

/// An ordinary window of the program. Closing it hides it; it can be shown again. Main thread only.
class AppWindow {
  public:
    enum class Level { normal, floating };

    AppWindow() = default;
    AppWindow(const AppWindow&) = delete;
    AppWindow& operator=(const AppWindow&) = delete;
    virtual ~AppWindow() = default;

    /// In the middle of the display.
    virtual void center() = 0;
    virtual void makeKeyAndOrderFront() = 0;
    /// To the front though another app is active.
    virtual void orderFrontRegardless() = 0;
    virtual void setLevel(Level level) = 0;
    /// False while it is closed.
    virtual bool isVisible() const = 0;
    virtual void close() = 0;

    /// Told of each closing, by the user's hand and by `close`.
    std::function<void()> onWillClose = [] {};
};

}  // namespace OrvelModes
