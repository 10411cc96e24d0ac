#pragma once

namespace OrvelUI {

/// Registers descriptions of the card's own widgets for assistive programs. Further calls do
/// nothing.
void installCardAccessibility();

}  // namespace OrvelUI
