#pragma once

namespace OrvelUI {

/// Lets Qt describe the program's own small controls and the rows of the menu panel to assistive
/// programs. Once is enough; more does nothing.
void installControlAccessibility();

}  // namespace OrvelUI
