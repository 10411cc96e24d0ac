#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace OrvelCore {

/// A point of the wall clock. Only the edges of the program know dates; all else counts seconds of
/// the monotonic clock. The present is `Date(std::chrono::system_clock::now())`.
using Seconds = std::chrono::duration<double>;
using Date = std::chrono::sys_time<Seconds>;

inline double secondsSince1970(Date date) {
    return date.time_since_epoch().count();
}
inline Date dateFromSecondsSince1970(double seconds) {
    return Date(Seconds(seconds));
}
/// Seconds from `earlier` to `later`, negative when they stand the other way round.
inline double secondsBetween(Date earlier, Date later) {
    return (later - earlier).count();
}

/// The nearest date whose year has four digits, 0001 to 9999, in UTC: what calendars can be asked
/// about whatever a file held.
Date clampedToCalendar(Date date);

/// "2026-03-01T09:30:00Z". Fractions of a second are cut off; the date is clamped to the calendar.
std::string iso8601(Date date);
/// Reads what `iso8601` writes, also with an offset such as "+01:00" in place of the "Z". Nothing
/// for any other text, a date that no calendar has and fractions of a second among them.
std::optional<Date> dateFromISO8601(std::string_view text);

}  // namespace OrvelCore
