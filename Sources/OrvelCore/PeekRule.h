#pragma once

namespace OrvelCore::PeekRule {

/// In seconds. The key must be held for at least this long.
inline constexpr double hold = 0.25;

/// Whether the user peeks: only Option is held, for long enough, and no other key was pressed
/// since. So a shortcut that begins with Option reveals nothing. Times are in seconds.
constexpr bool active(bool optionOnly, double heldFor, double sinceKeyDown) {
    return optionOnly && heldFor >= hold && sinceKeyDown >= heldFor;
}

}  // namespace OrvelCore::PeekRule
