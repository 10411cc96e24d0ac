#pragma once

namespace OrvelUI {

/// Registers descriptions of the program's own small controls and the rows of the menu panel for
/// assistive programs. Further calls do nothing.
void installControlAccessibility();

}  // namespace OrvelUI
