#pragma once

#include <string>
#include <string_view>

/// The words of this desktop. The product's texts speak of a Mac; here they are turned into what a
/// user of a Linux desktop knows, at the one point where a text meets a widget or a voice.
namespace OrvelUI::Wording {

/// A text of the product in the desktop's words. Not for words of the user's own or of another
/// program.
std::string shown(std::string_view text);
/// The label of one keycap as it is printed on the keys of a PC.
std::string keycap(std::string_view cap);

}  // namespace OrvelUI::Wording
