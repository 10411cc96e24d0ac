#pragma once

#include "OrvelCore/TriggerSettings.h"

namespace OrvelCore {

enum class IdleAction { none, blur, lock, reveal };

/// What the absence of input calls for. All durations in seconds.
namespace IdlePolicy {

/// Less idle time than this is a user at work: the controller looks once a second, and half a
/// second is left for a late look.
inline constexpr double inputThreshold = 1.5;

/// `inputIdle` is the time since the last input and alone clears a blur; `timerIdle` is what the
/// two timers count, which also start anew when the display is no longer kept awake.
/// `blurredByIdle`: the standing blur was begun here. `locked`: by us or by macOS.
IdleAction action(double inputIdle, double timerIdle, bool displayKeptAwake,
                  const IdleSettings& settings, bool blurredByIdle, bool locked);
/// Both measures are `idle`.
IdleAction action(double idle, bool displayKeptAwake, const IdleSettings& settings,
                  bool blurredByIdle, bool locked);

}  // namespace IdlePolicy

}  // namespace OrvelCore
