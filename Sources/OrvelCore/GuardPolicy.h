#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "OrvelCore/LockMarker.h"

namespace OrvelCore {

enum class GuardAction { engageMacOSLockAndRelaunch, engageMacOSLock, stay };

/// What the crash guard does when the app ends while a lock may be active.
namespace GuardPolicy {

/// In seconds. If the app exits sooner than this after a relaunch, another relaunch would not help.
inline constexpr double relaunchCooldown = 600;
/// In seconds. A locker that a lock was handed off to has taken the lock over by then. If it has
/// not, the relaunched app does.
inline constexpr double lockerPatience = 6;

/// The action when the app's process has ended. `lastRelaunch` and `now` are seconds of the same
/// clock; `lastRelaunch` is `nullopt` if the guard has not relaunched the app yet.
GuardAction onOrvelExit(const std::optional<LockMarker>& marker, std::string_view bootSession,
                        std::optional<double> lastRelaunch, double now);
/// The action when the guard itself starts.
GuardAction onGuardStart(const std::optional<LockMarker>& marker, std::string_view bootSession,
                         bool orvelRunning);

}  // namespace GuardPolicy

/// Performs a `GuardAction`.
struct GuardResponder {
    std::function<void()> engageLock;
    std::function<void()> relaunch;

    void perform(GuardAction action) const;
};

}  // namespace OrvelCore
