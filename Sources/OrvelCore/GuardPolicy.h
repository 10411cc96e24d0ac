#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "OrvelCore/LockMarker.h"

namespace OrvelCore {

enum class GuardAction { engageMacOSLockAndRelaunch, engageMacOSLock, stay };

/// What the crash guard does when the app goes away while a lock may be running.
namespace GuardPolicy {

/// Seconds. An exit sooner after a relaunch means that relaunching does not help.
inline constexpr double relaunchCooldown = 600;

/// When the app's process has gone. `lastRelaunch` and `now` are seconds of one clock; nothing
/// when the guard has not relaunched yet.
GuardAction onOrvelExit(const std::optional<LockMarker>& marker, std::string_view bootSession,
                        std::optional<double> lastRelaunch, double now);
/// When the guard itself starts.
GuardAction onGuardStart(const std::optional<LockMarker>& marker, std::string_view bootSession,
                         bool orvelRunning);

}  // namespace GuardPolicy

/// Carries out a `GuardAction`.
struct GuardResponder {
    std::function<void()> engageLock;
    std::function<void()> relaunch;

    void perform(GuardAction action) const;
};

}  // namespace OrvelCore
