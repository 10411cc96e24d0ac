#pragma once

#include "OrvelCore/TriggerSettings.h"

namespace OrvelCore {

enum class IdleAction { none, blur, lock, reveal };

/// The action that the user's absence requires. All durations are in seconds.
namespace IdlePolicy {

/// A shorter idle time means that the user is active: the controller polls once a second, and half
/// a second allows for a late poll.
inline constexpr double inputThreshold = 1.5;

/// `inputIdle` is the time since the last input; only this removes a blur. `timerIdle` is the time
/// that the two timers measure; they also restart when the display is no longer kept awake.
/// `blurredByIdle`: this policy has started the current blur. `locked`: this program or macOS has
/// locked the screen.
IdleAction action(double inputIdle, double timerIdle, bool displayKeptAwake,
                  const IdleSettings& settings, bool blurredByIdle, bool locked);
/// Uses `idle` for both durations.
IdleAction action(double idle, bool displayKeptAwake, const IdleSettings& settings,
                  bool blurredByIdle, bool locked);

}  // namespace IdlePolicy

}  // namespace OrvelCore
