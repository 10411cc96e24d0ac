#pragma once

#include <functional>
#include <memory>

namespace OrvelSystem {

/// What happens to the session, told on the main thread. Dropping it ends the reports.
class SessionEvents {
  public:
    /// Starts observing. The functions are set afterwards: nothing is reported before the next
    /// turn of the main loop.
    SessionEvents();
    ~SessionEvents();
    SessionEvents(const SessionEvents&) = delete;
    SessionEvents& operator=(const SessionEvents&) = delete;

    std::function<void()> onMacOSLocked = [] {};
    std::function<void()> onMacOSUnlocked = [] {};
    /// It was locked, and whoever tells of its unlock is gone.
    std::function<void()> onMacOSLockUnknown = [] {};
    std::function<void()> onWake = [] {};
    std::function<void()> onScreensChanged = [] {};

    /// Whether this program itself keeps the keyboard from every other one. A screen locker that
    /// comes up meanwhile gets no keys, gives up, and the session counts as unlocked again though
    /// nobody unlocked it: such an end is not reported.
    std::function<bool()> holdsKeyboard = [] { return false; };

    /// For whoever watches the displays: reports `onScreensChanged`.
    void screensChanged();
    /// Ends all reports, for good.
    void stop();

  private:
    class Watch;
    std::unique_ptr<Watch> watch_;
};

}  // namespace OrvelSystem
