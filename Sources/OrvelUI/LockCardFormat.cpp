#include "OrvelUI/LockCardFormat.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace OrvelUI::LockCardFormat {

namespace Text = OrvelCore::Text;

std::string countdown(double seconds) {
    const auto total = static_cast<long long>(std::max(0.0, std::ceil(seconds)));
    return fmt::format("{}:{:02}", total / 60, total % 60);
}

std::string initials(std::string_view name) {
    const auto words = Text::splitOnWhitespace(name);
    if (words.empty()) return "?";
    std::string letters = Text::firstCharacters(words.front(), 1);
    if (words.size() > 1) letters += Text::firstCharacters(words.back(), 1);
    return Text::upperCase(letters);
}

std::string time(OrvelCore::Date date, const OrvelCore::Locale& locale,
                 const OrvelCore::TimeZone& timeZone) {
    std::string pattern = Text::dateFormatPattern("jmm", locale);
    if (pattern.empty()) pattern = "HH:mm";
    std::erase(pattern, 'a');
    return Text::formatDate(date, Text::trim(pattern), locale, timeZone);
}

std::string date(OrvelCore::Date date, const OrvelCore::Locale& locale,
                 const OrvelCore::TimeZone& timeZone) {
    return Text::dateFromTemplate(date, "EEEEdMMMM", locale, timeZone);
}

}  // namespace OrvelUI::LockCardFormat
