#pragma once

namespace OrvelUI {

/// Lets Qt describe the controls of forms to assistive programs. Once is enough; more does nothing.
void installFormAccessibility();

}  // namespace OrvelUI
