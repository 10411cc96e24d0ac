#pragma once

namespace OrvelUI {

/// Registers descriptions of the controls of forms for assistive programs. Further calls do
/// nothing.
void installFormAccessibility();

}  // namespace OrvelUI
