#pragma once

namespace OrvelCore::PeekRule {

/// Seconds for which the key must have been down.
inline constexpr double hold = 0.25;

/// Option alone has been down for long enough and no key was pressed since, so that a shortcut
/// that merely begins with Option reveals nothing. Times in seconds.
constexpr bool active(bool optionOnly, double heldFor, double sinceKeyDown) {
    return optionOnly && heldFor >= hold && sinceKeyDown >= heldFor;
}

}  // namespace OrvelCore::PeekRule
