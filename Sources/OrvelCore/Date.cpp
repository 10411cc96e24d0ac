#include "OrvelCore/Date.h"

#include <algorithm>
#include <cmath>

#include <fmt/core.h>

namespace OrvelCore {

namespace {

using WholeSeconds = std::chrono::sys_seconds;

constexpr WholeSeconds yearStart(int year) {
    return std::chrono::sys_days(std::chrono::year(year) / std::chrono::January / 1);
}
constexpr WholeSeconds earliest = yearStart(1);
constexpr WholeSeconds latest = yearStart(10000) - std::chrono::seconds(1);

/// Parses digits from the front of `rest`, and records in `isValid` whether all of them were
/// present.
struct Reader {
    std::string_view rest;
    bool isValid = true;

    int number(std::size_t digits) {
        int value = 0;
        for (std::size_t i = 0; i < digits; ++i) {
            if (i >= rest.size() || rest[i] < '0' || rest[i] > '9') {
                isValid = false;
                return 0;
            }
            value = value * 10 + (rest[i] - '0');
        }
        rest.remove_prefix(digits);
        return value;
    }
    bool take(char wanted) {
        if (rest.empty() || rest.front() != wanted) return false;
        rest.remove_prefix(1);
        return true;
    }
    void expect(char wanted) { isValid = take(wanted) && isValid; }
};

}  // namespace

Date clampedToCalendar(Date date) {
    if (std::isnan(secondsSince1970(date))) return Date(earliest);
    return std::clamp(date, Date(earliest), Date(latest));
}

std::string iso8601(Date date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(clampedToCalendar(date));
    const auto day = std::chrono::floor<std::chrono::days>(seconds);
    const std::chrono::year_month_day ymd(day);
    const std::chrono::hh_mm_ss time(seconds - day);
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(ymd.year()),
                       static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()),
                       time.hours().count(), time.minutes().count(), time.seconds().count());
}

std::optional<Date> dateFromISO8601(std::string_view text) {
    Reader reader{text};
    const int year = reader.number(4);
    reader.expect('-');
    const int month = reader.number(2);
    reader.expect('-');
    const int day = reader.number(2);
    reader.expect('T');
    const int hour = reader.number(2);
    reader.expect(':');
    const int minute = reader.number(2);
    reader.expect(':');
    const int second = reader.number(2);
    int offsetMinutes = 0;
    if (!reader.take('Z')) {
        const bool isWest = reader.take('-');
        if (!isWest) reader.expect('+');
        const int hours = reader.number(2);
        reader.expect(':');
        const int minutes = reader.number(2);
        if (hours > 23 || minutes > 59) return std::nullopt;
        offsetMinutes = (hours * 60 + minutes) * (isWest ? -1 : 1);
    }
    const std::chrono::year_month_day ymd(std::chrono::year(year),
                                          std::chrono::month(static_cast<unsigned>(month)),
                                          std::chrono::day(static_cast<unsigned>(day)));
    if (!reader.isValid || !reader.rest.empty() || !ymd.ok() || hour > 23 || minute > 59 ||
        second > 59)
        return std::nullopt;
    return Date(WholeSeconds(std::chrono::sys_days(ymd)) + std::chrono::hours(hour) +
                std::chrono::minutes(minute - offsetMinutes) + std::chrono::seconds(second));
}

}  // namespace OrvelCore
