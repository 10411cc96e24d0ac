#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace OrvelCore {

/// `Date` is a wall-clock time, which only the outermost parts of the program use; the rest counts
/// seconds of the monotonic clock. The current time is `Date(std::chrono::system_clock::now())`.
using Seconds = std::chrono::duration<double>;
using Date = std::chrono::sys_time<Seconds>;

inline double secondsSince1970(Date date) {
    return date.time_since_epoch().count();
}
inline Date dateFromSecondsSince1970(double seconds) {
    return Date(Seconds(seconds));
}
/// Seconds from `earlier` to `later`; negative if `later` comes first.
inline double secondsBetween(Date earlier, Date later) {
    return (later - earlier).count();
}

/// Limits `date` to the years 0001 to 9999 in UTC, which every calendar function accepts, whatever
/// value a file contained. NaN becomes the earliest date.
Date clampedToCalendar(Date date);

/// For example "2026-03-01T09:30:00Z". Fractions of a second are truncated; the date is clamped by
/// `clampedToCalendar`.
std::string iso8601(Date date);
/// Parses the format of `iso8601`, also with an offset such as "+01:00" instead of "Z". `nullopt`
/// for any other text, including nonexistent dates and fractions of a second.
std::optional<Date> dateFromISO8601(std::string_view text);

}  // namespace OrvelCore
