#include "OrvelCore/AttemptText.h"

#include <chrono>

#include <fmt/core.h>

namespace OrvelCore::AttemptText {

namespace {

std::string timeText(Date date, const Locale& locale, const TimeZone& timeZone) {
    return Text::dateFromTemplate(date, "jmm", locale, timeZone);
}

}  // namespace

std::string toastTitle(int count) {
    if (count == 1) return "1 failed attempt while you were away";
    return fmt::format("{} failed attempts while you were away", count);
}

std::string toastDetail(const std::vector<Date>& dates, const Locale& locale,
                        const TimeZone& timeZone) {
    if (dates.empty()) return {};
    const std::string first = timeText(dates[0], locale, timeZone);
    if (dates.size() == 1) return fmt::format("At {}", first);
    const std::string second = timeText(dates[1], locale, timeZone);
    if (dates.size() == 2) return fmt::format("At {} and {}", first, second);
    return fmt::format("At {}, {} and {} more", first, second, dates.size() - 2);
}

std::string historyLine(Date date, Date now, const Locale& locale, const TimeZone& timeZone) {
    const auto day = [&](Date of) {
        return std::chrono::sys_days(Text::calendarDay(of, timeZone));
    };
    const std::string time = timeText(date, locale, timeZone);
    if (day(date) == day(now)) return fmt::format("Today at {}", time);
    if (day(date) == day(now) - std::chrono::days(1)) return fmt::format("Yesterday at {}", time);
    return fmt::format("{} at {}", Text::dateFromTemplate(date, "dMMM", locale, timeZone), time);
}

}  // namespace OrvelCore::AttemptText
