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
    /// The owner has unlocked the system's own lock. Only for a platform whose word for it no other
    /// program can produce.
    std::function<void()> onMacOSUnlocked = [] {};
    /// The system's own lock has ended, or can no longer be followed, and nothing proves that its
    /// owner unlocked it.
    std::function<void()> onMacOSLockUnknown = [] {};
    std::function<void()> onWake = [] {};
    std::function<void()> onScreensChanged = [] {};

    /// Reports `onScreensChanged`, for the code that watches the displays.
    void screensChanged();
    /// Ends all reports, for good.
    void stop();

  private:
    class Watch;
    std::unique_ptr<Watch> watch_;
};

}  // namespace OrvelSystem
