#pragma once

#include <functional>

#include "OrvelCore/SleepLock.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelModes {

struct SleepSources {
    /// The situation at this moment.
    std::function<OrvelCore::SleepLock::Situation()> situation;
    /// Whether the machine is to wait before it sleeps. Setting the same value again is permitted.
    std::function<void(bool delays)> delaySleep;
    /// Locks the screen without a fade, and calls `SleepController::screenCovered` when the covers
    /// are up, or at once if they already are.
    std::function<void()> lock;
};

/// Locks the screen before the machine sleeps, and when the session asks for it. Main thread only.
class SleepController {
  public:
    SleepController(OrvelSystem::MainLoop& loop, SleepSources sources);

    /// Call at the start and after each change of the setting.
    void settingsChanged() { handle(OrvelCore::SleepLock::Event::settingsChanged); }
    void sleepStarts() { handle(OrvelCore::SleepLock::Event::sleepStarts); }
    void woke() { handle(OrvelCore::SleepLock::Event::woke); }
    void lockRequested() { handle(OrvelCore::SleepLock::Event::lockRequested); }
    /// The covers of a lock are up, or the lock has failed.
    void screenCovered();

  private:
    void handle(OrvelCore::SleepLock::Event event);

    OrvelSystem::MainLoop& loop_;
    SleepSources sources_;
    OrvelCore::SleepLock rules_;
    OrvelSystem::Timer settled_;
    OrvelSystem::Timer limit_;
};

}  // namespace OrvelModes
