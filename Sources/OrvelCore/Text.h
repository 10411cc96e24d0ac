#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/Date.h"

namespace OrvelCore {

/// A locale identified by its BCP 47 or ICU name, such as "en-GB" or "en_GB". An unknown name
/// behaves like the root locale.
struct Locale {
    std::string id;
    bool operator==(const Locale&) const = default;
};

/// A time zone identified by its Olson name, such as "Europe/Berlin". An unknown name behaves like
/// UTC.
struct TimeZone {
    std::string id;
    bool operator==(const TimeZone&) const = default;
};

/// The user's locale for dates.
Locale currentLocale();
/// Queried from the system each time, since the user may travel while the program runs.
TimeZone currentTimeZone();

/// Functions for UTF-8 text. Each invalid byte counts as one replacement character; no function
/// fails. A "character" is a user-perceived character (grapheme cluster).
namespace Text {

std::size_t characterCount(std::string_view text);
/// The byte offset at which the last character begins; 0 for empty text.
std::size_t lastCharacterStart(std::string_view text);
/// Returns the first `count` characters, or the whole text if it is shorter.
std::string firstCharacters(std::string_view text, std::size_t count);

/// Removes Unicode whitespace, including line breaks, from both ends.
std::string trim(std::string_view text);
/// The parts between whitespace, without empty ones.
std::vector<std::string> splitOnWhitespace(std::string_view text);

/// Uses the language-independent rules of Unicode.
std::string upperCase(std::string_view text);
std::string lowerCase(std::string_view text);

/// Formats the date with the fields of `skeleton`, in the order and with the separators of the
/// locale. "jmm" is the time of day, "dMMM" the day and the short month, "EEEEdMMMM" the weekday,
/// the day and the full month.
std::string dateFromTemplate(Date date, std::string_view skeleton, const Locale& locale,
                             const TimeZone& timeZone);
/// The pattern that `dateFromTemplate` uses, such as "h:mm a"; empty if there is none.
std::string dateFormatPattern(std::string_view skeleton, const Locale& locale);
std::string formatDate(Date date, std::string_view pattern, const Locale& locale,
                       const TimeZone& timeZone);

/// The Gregorian calendar day of `date` in the given time zone.
std::chrono::year_month_day calendarDay(Date date, const TimeZone& timeZone);

}  // namespace Text

/// Orders names as a file manager does: digits by their numeric value, letters by the rules of the
/// locale, and case only between otherwise equal names. A comparator for the sorting algorithms.
class NaturalOrder {
  public:
    explicit NaturalOrder(const Locale& locale = currentLocale());
    /// Whether `a` precedes `b`.
    bool operator()(std::string_view a, std::string_view b) const;

  private:
    struct Rules;
    std::shared_ptr<const Rules> rules_;  // shared, since algorithms copy their comparator
};

}  // namespace OrvelCore
