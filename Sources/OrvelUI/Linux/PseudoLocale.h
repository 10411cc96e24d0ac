#pragma once

#include <string>
#include <string_view>

namespace OrvelUI {

/// Stands in for a translation, to see how windows cope with one. The variable
/// `ORVEL_PSEUDO_LOCALE` chooses it: `longer` adds accents and 40 % more letters, `rtl` writes
/// Hebrew letters. Without the variable, or with another value, the text is returned as it is.
std::string pseudoTranslated(std::string_view text);

}  // namespace OrvelUI
