#pragma once

#include <functional>
#include <memory>

namespace OrvelSystem {

/// Reports events of the session on the main thread. Destroying it ends the reports.
class SessionEvents {
  public:
    /// Starts observing. Set the functions afterwards: nothing is reported before the next turn of
    /// the main loop.
    SessionEvents();
    ~SessionEvents();
    SessionEvents(const SessionEvents&) = delete;
    SessionEvents& operator=(const SessionEvents&) = delete;

    std::function<void()> onMacOSLocked = [] {};
    /// The owner has unlocked the system's own lock. Reported only on platforms whose proof of an
    /// unlock no other program can forge.
    std::function<void()> onMacOSUnlocked = [] {};
    /// The system's own lock has ended, or its state is no longer available, and nothing proves
    /// that the owner unlocked it.
    std::function<void()> onMacOSLockUnknown = [] {};
    /// The machine is about to sleep.
    std::function<void()> onSleep = [] {};
    std::function<void()> onWake = [] {};
    /// The session asks its locker to lock. Neither this nor `onSleep` is reported on platforms
    /// whose own lock handles both.
    std::function<void()> onLockRequested = [] {};
    std::function<void()> onScreensChanged = [] {};

    /// Reports `onScreensChanged`; for the code that watches the displays.
    void screensChanged();
    /// Ends all reports permanently.
    void stop();

  private:
    class Watch;
    std::unique_ptr<Watch> watch_;
};

}  // namespace OrvelSystem
