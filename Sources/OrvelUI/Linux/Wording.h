#pragma once

#include <string>
#include <string_view>

/// Adapts the product's texts, which refer to a Mac, to terms that users of a Linux desktop know.
/// Applied at the one point where a text is shown or spoken.
namespace OrvelUI::Wording {

/// Returns a product text in the desktop's terms. Not for text from the user or other programs.
std::string shown(std::string_view text);
/// Returns the label of a keycap as it is printed on PC keyboards.
std::string keycap(std::string_view cap);

}  // namespace OrvelUI::Wording
