#include "OrvelUI/Linux/PseudoLocale.h"

#include <array>
#include <cstdlib>

namespace OrvelUI {

namespace {

bool isLetter(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

std::string longer(std::string_view text) {
    static constexpr std::string_view plain = "aeiouyAEIOUY";
    static constexpr std::array<std::string_view, plain.size()> accented{
        "å", "ê", "ï", "ö", "ü", "ÿ", "Å", "Ê", "Ï", "Ö", "Ü", "Ÿ"};
    std::string words;
    std::size_t letters = 0;
    for (const char byte : text) {
        const auto vowel = plain.find(byte);
        if (vowel == std::string_view::npos)
            words += byte;
        else
            words += accented[vowel];
        if (!isLetter(byte)) continue;
        // Two more letters for each five.
        ++letters;
        if (letters % 5 == 2 || letters % 5 == 4) words += accented[letters % 6];
    }
    return words;
}

std::string rightToLeft(std::string_view text) {
    std::string words;
    for (const char byte : text) {
        if (isLetter(byte))
            // The alphabet from U+05D0 on, in UTF-8.
            words += {'\xd7', static_cast<char>(0x90 + (byte | 0x20) - 'a')};
        else
            words += byte;
    }
    return words;
}

}  // namespace

std::string pseudoTranslated(std::string_view text) {
    static const char* const variable = std::getenv("ORVEL_PSEUDO_LOCALE");
    const std::string_view locale = variable != nullptr ? variable : "";
    if (locale == "longer") return longer(text);
    if (locale == "rtl") return rightToLeft(text);
    return std::string(text);
}

}  // namespace OrvelUI
