#pragma once

#include <functional>
#include <optional>

#include "OrvelCore/TriggerSettings.h"
#include "OrvelCovers/Ticker.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelModes {

/// What the controller reads from the system. A read that fails returns false, so it never prevents
/// blurring or locking.
struct IdleSources {
    /// Seconds since the last input.
    std::function<double()> idleSeconds;
    /// Whether another process prevents the display from sleeping.
    std::function<bool()> displayKeptAwake;
    /// Whether the session is locked or not the one on the screen.
    std::function<bool()> sessionLocked;
    /// The monotonic clock, in seconds.
    std::function<double()> now;

    /// Tracks the session from the first read on; the results are false until its state is known.
    /// `loop` must outlive the result.
    static IdleSources live(OrvelSystem::MainLoop& loop);
};

/// While blurring or locking after idle time is configured, checks once a second how long the user
/// has been idle. Main thread only.
class IdleController {
  public:
    /// Seconds between checks.
    static constexpr double interval = 1;

    IdleController(OrvelCore::IdleSettings settings, IdleSources sources,
                   OrvelCovers::Ticker& ticker);
    ~IdleController();
    IdleController(const IdleController&) = delete;
    IdleController& operator=(const IdleController&) = delete;

    const OrvelCore::IdleSettings& settings() const { return settings_; }
    void setSettings(OrvelCore::IdleSettings settings);
    /// Whether the current blur was started by this controller.
    bool blurredByIdle() const { return blurredByIdle_; }
    void quickBlurEnded() { blurredByIdle_ = false; }

    std::function<void()> onBlur = [] {};
    std::function<void()> onLock = [] {};
    std::function<void()> onReveal = [] {};
    /// Whether the screen lock is up.
    std::function<bool()> isMacLocked = [] { return false; };
    /// Whether the screen is blurred, for any reason.
    std::function<bool()> isQuickBlurred = [] { return false; };

  private:
    void schedule();
    void tick();

    OrvelCore::IdleSettings settings_;
    IdleSources sources_;
    OrvelCovers::Ticker& ticker_;
    bool blurredByIdle_ = false;
    /// the last check at which the display was kept awake, in seconds of `now`
    std::optional<double> keptAwakeAt_;
};

}  // namespace OrvelModes
