#include "OrvelCore/AttemptText.h"
#include "OrvelCore/Text.h"

#include "Support/Environment.h"

namespace {

const Locale british{"en-GB"};
const TimeZone utc{"Etc/UTC"};
const TimeZone berlin{"Europe/Berlin"};
const TimeZone auckland{"Pacific/Auckland"};

Date at(const char* text) {
    return dateFromISO8601(text).value();
}

}  // namespace

TEST(Text, TheUsersLocaleIsThatOfDates) {
    struct Case {
        const char* all;
        const char* time;
        const char* lang;
        std::string expected;
    };
    for (const auto& c : std::vector<Case>{
             {nullptr, "en_GB.UTF-8", "de_DE.UTF-8", "en_GB"},
             {"fr_FR", "en_GB.UTF-8", "de_DE.UTF-8", "fr_FR"},
             {"", nullptr, "de_DE@euro", "de_DE"},
             {nullptr, nullptr, "C.UTF-8", "en_US_POSIX"},
         }) {
        const Environment all("LC_ALL", c.all), time("LC_TIME", c.time), lang("LANG", c.lang);
        EXPECT_EQ(currentLocale().id, c.expected);
    }
    const Environment zone("TZ", "Europe/Berlin");
    EXPECT_EQ(currentTimeZone().id, "Europe/Berlin");
}

TEST(Date, ReadsAndWritesISO8601) {
    for (const char* text : {"2026-03-01T09:30:00Z", "1969-12-31T23:59:59Z", "2024-02-29T00:00:00Z",
                             "0001-01-01T00:00:00Z", "9999-12-31T23:59:59Z"})
        EXPECT_EQ(iso8601(at(text)), text);
    EXPECT_EQ(secondsSince1970(at("2026-03-01T09:30:00Z")), 1772357400);
    EXPECT_EQ(iso8601(dateFromSecondsSince1970(-0.5)), "1969-12-31T23:59:59Z");
    EXPECT_EQ(iso8601(at("2026-03-01T00:30:00+01:30")), "2026-02-28T23:00:00Z");
    EXPECT_EQ(iso8601(at("2026-03-01T23:30:00-01:00")), "2026-03-02T00:30:00Z");
    EXPECT_EQ(iso8601(dateFromSecondsSince1970(1e300)), "9999-12-31T23:59:59Z");
    EXPECT_EQ(iso8601(dateFromSecondsSince1970(std::nan(""))), "0001-01-01T00:00:00Z");
    constexpr std::string_view malformed =
        "|2026|2026-03-01|2026-03-01T09:30:00|2026-03-01 09:30:00Z|2026-03-01T09:30:00.5Z|"
        "2026-03-01T09:30:00z|2026-3-1T09:30:00Z|2026-02-29T09:30:00Z|2026-13-01T09:30:00Z|"
        "2026-00-01T09:30:00Z|2026-03-00T09:30:00Z|2026-03-01T24:00:00Z|2026-03-01T09:60:00Z|"
        "2026-03-01T09:30:60Z|2026-03-01T09:30:00Zx| 2026-03-01T09:30:00Z|+026-03-01T09:30:00Z|"
        "2026-03-01T09:30:00+0100|2026-03-01T09:30:00+24:00|2026-03-01T09:30:00+01:00Z";
    for (const auto part : std::views::split(malformed, '|')) {
        const std::string_view bad(part);
        EXPECT_FALSE(dateFromISO8601(bad)) << bad;
    }
}

TEST(AttemptText, TellsOfAttempts) {
    EXPECT_EQ(AttemptText::toastTitle(1), "1 failed attempt while you were away");
    EXPECT_EQ(AttemptText::toastTitle(0), "0 failed attempts while you were away");
    EXPECT_EQ(AttemptText::toastTitle(12), "12 failed attempts while you were away");

    const std::vector<Date> dates = {at("2026-03-01T09:30:00Z"), at("2026-03-01T08:05:00Z"),
                                     at("2026-03-01T07:00:00Z"), at("2026-03-01T06:00:00Z")};
    const auto detail = [&](std::size_t count) {
        return AttemptText::toastDetail({dates.begin(), dates.begin() + static_cast<long>(count)},
                                        british, utc);
    };
    EXPECT_EQ(detail(0), "");
    EXPECT_EQ(detail(1), "At 09:30");
    EXPECT_EQ(detail(2), "At 09:30 and 08:05");
    EXPECT_EQ(detail(3), "At 09:30, 08:05 and 1 more");
    EXPECT_EQ(detail(4), "At 09:30, 08:05 and 2 more");
}

TEST(AttemptText, NamesTheDayByTheCalendar) {
    const auto line = [](const char* date, const char* now, const TimeZone& zone) {
        return AttemptText::historyLine(at(date), at(now), british, zone);
    };
    EXPECT_EQ(line("2026-03-02T00:10:00Z", "2026-03-02T23:50:00Z", utc), "Today at 00:10");
    EXPECT_EQ(line("2026-03-01T23:50:00Z", "2026-03-02T00:10:00Z", utc), "Yesterday at 23:50");
    EXPECT_EQ(line("2026-03-01T23:50:00Z", "2026-03-02T00:10:00Z", auckland), "Today at 12:50");
    EXPECT_EQ(line("2026-02-28T23:50:00Z", "2026-03-02T00:10:00Z", utc), "28 Feb at 23:50");
    EXPECT_EQ(line("2026-03-03T00:10:00Z", "2026-03-02T00:10:00Z", utc), "3 Mar at 00:10");
    // The day after the change to summer time began 23 hours after the previous day.
    EXPECT_EQ(line("2026-03-28T23:00:00Z", "2026-03-30T21:00:00Z", berlin), "Yesterday at 00:00");
    for (const double absurd : {1e300, -1e300, std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()})
        EXPECT_TRUE(Text::calendarDay(dateFromSecondsSince1970(absurd), auckland).ok());
}
