#pragma once

#include <string>
#include <string_view>

#include "OrvelCore/Date.h"
#include "OrvelCore/Text.h"

/// Pure formatting functions for the lock card.
namespace OrvelUI::LockCardFormat {

/// Minutes and seconds, rounded up to a whole second: "1:00". Negative values count as 0.
std::string countdown(double seconds);
/// The first letters of the first and last word in upper case; "?" for a name without words.
std::string initials(std::string_view name);
/// Hour and minute in the format of the locale, without AM or PM.
std::string time(OrvelCore::Date date, const OrvelCore::Locale& locale,
                 const OrvelCore::TimeZone& timeZone);
/// Weekday, day and month, written out in the order of the locale.
std::string date(OrvelCore::Date date, const OrvelCore::Locale& locale,
                 const OrvelCore::TimeZone& timeZone);

}  // namespace OrvelUI::LockCardFormat
