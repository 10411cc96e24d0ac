#pragma once

#include <functional>
#include <optional>

#include "OrvelCore/TriggerSettings.h"
#include "OrvelCovers/Ticker.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelModes {

/// What it sees of the system. A read that fails gives false, and so holds nothing back.
struct IdleSources {
    /// Seconds since the last input.
    std::function<double()> idleSeconds;
    /// Another process holds off the sleep of the display.
    std::function<bool()> displayKeptAwake;
    /// The session is locked or not on the screen.
    std::function<bool()> sessionLocked;
    /// Seconds of the monotonic clock.
    std::function<double()> now;

    /// What the session does is followed from the first look on; until it is known, the answers are
    /// false. `loop` outlives them.
    static IdleSources live(OrvelSystem::MainLoop& loop);
};

/// Looks once a second, while it has to, for how long the user has been away, and blurs or locks.
/// Main thread only.
class IdleController {
  public:
    /// Seconds.
    static constexpr double interval = 1;

    IdleController(OrvelCore::IdleSettings settings, IdleSources sources,
                   OrvelCovers::Ticker& ticker);
    ~IdleController();
    IdleController(const IdleController&) = delete;
    IdleController& operator=(const IdleController&) = delete;

    const OrvelCore::IdleSettings& settings() const { return settings_; }
    void setSettings(OrvelCore::IdleSettings settings);
    /// The blur that stands was begun here.
    bool blurredByIdle() const { return blurredByIdle_; }
    void quickBlurEnded() { blurredByIdle_ = false; }

    std::function<void()> onBlur = [] {};
    std::function<void()> onLock = [] {};
    std::function<void()> onReveal = [] {};
    /// The program's own lock is up.
    std::function<bool()> isMacLocked = [] { return false; };
    /// The screen is blurred, for whatever reason.
    std::function<bool()> isQuickBlurred = [] { return false; };

  private:
    void schedule();
    void tick();

    OrvelCore::IdleSettings settings_;
    IdleSources sources_;
    OrvelCovers::Ticker& ticker_;
    bool blurredByIdle_ = false;
    std::optional<double> keptAwakeAt_;  // the latest look at which the display was
};

}  // namespace OrvelModes
