#pragma once

#include <string>
#include <string_view>

#include "OrvelCore/Date.h"
#include "OrvelCore/Text.h"

/// The pure formatting of the lock card.
namespace OrvelUI::LockCardFormat {

/// Minutes and seconds, rounded up to a whole second: "1:00". Below 0 counts as 0.
std::string countdown(double seconds);
/// First letters of the first and last word in upper case; "?" for a name without a word.
std::string initials(std::string_view name);
/// Hour and minute as the locale writes them, without an AM or PM mark.
std::string time(OrvelCore::Date date, const OrvelCore::Locale& locale,
                 const OrvelCore::TimeZone& timeZone);
/// Weekday, day and month, written out, in the order of the locale.
std::string date(OrvelCore::Date date, const OrvelCore::Locale& locale,
                 const OrvelCore::TimeZone& timeZone);

}  // namespace OrvelUI::LockCardFormat
