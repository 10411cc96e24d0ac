#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/Date.h"

namespace OrvelCore {

/// A locale by its BCP 47 or ICU name, such as "en-GB" or "en_GB". An unknown one reads like the
/// root locale.
struct Locale {
    std::string id;
    bool operator==(const Locale&) const = default;
};

/// A time zone by its Olson name, such as "Europe/Berlin". An unknown one reads like UTC.
struct TimeZone {
    std::string id;
    bool operator==(const TimeZone&) const = default;
};

/// The locale that the user reads dates in.
Locale currentLocale();
/// Asked of the system anew each time, since the user may travel while the program runs.
TimeZone currentTimeZone();

/// Services on UTF-8 text. Bytes that are not UTF-8 count as one replacement character each and
/// never fail. "Character" means what a user takes for one: a grapheme cluster.
namespace Text {

std::size_t characterCount(std::string_view text);
/// Byte offset at which the last character begins; 0 for empty text.
std::size_t lastCharacterStart(std::string_view text);
/// The first `count` characters, or all there are.
std::string firstCharacters(std::string_view text, std::size_t count);

/// Without white space and line ends at both ends, by Unicode's notion of them.
std::string trim(std::string_view text);
/// The pieces between white space; never an empty one.
std::vector<std::string> splitOnWhitespace(std::string_view text);

/// By Unicode's own rules, those of no language in particular.
std::string upperCase(std::string_view text);
std::string lowerCase(std::string_view text);

/// The date in the order and with the separators that the locale uses for the fields of
/// `skeleton`: "jmm" the time of day, "dMMM" day and short month, "EEEEdMMMM" weekday, day and
/// month in full.
std::string dateFromTemplate(Date date, std::string_view skeleton, const Locale& locale,
                             const TimeZone& timeZone);
/// The pattern behind `dateFromTemplate`, such as "h:mm a"; empty when there is none.
std::string dateFormatPattern(std::string_view skeleton, const Locale& locale);
std::string formatDate(Date date, std::string_view pattern, const Locale& locale,
                       const TimeZone& timeZone);

/// The Gregorian day that holds `date` in the given time zone.
std::chrono::year_month_day calendarDay(Date date, const TimeZone& timeZone);

}  // namespace Text

/// Orders names as a file manager does: runs of digits by their number, letters by the rules of
/// the locale, case last. A function object for the sorting algorithms.
class NaturalOrder {
  public:
    explicit NaturalOrder(const Locale& locale = currentLocale());
    /// Whether `a` stands before `b`.
    bool operator()(std::string_view a, std::string_view b) const;

  private:
    struct Rules;
    std::shared_ptr<const Rules> rules_;  // shared, since algorithms copy their comparison
};

}  // namespace OrvelCore
