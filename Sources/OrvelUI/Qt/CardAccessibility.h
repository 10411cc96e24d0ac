#pragma once

namespace OrvelUI {

/// Makes the card's own widgets known to assistive programs for what they are. Once is enough,
/// more does no harm.
void installCardAccessibility();

}  // namespace OrvelUI
