#pragma once

#include <string>
#include <vector>

#include "OrvelCore/Date.h"
#include "OrvelCore/Text.h"

/// Texts about failed password attempts.
namespace OrvelCore::AttemptText {

/// `count` is at least 1; callers show nothing for 0.
std::string toastTitle(int count);
/// Names the first two of `dates`, in the given order. Empty if there are no dates.
std::string toastDetail(const std::vector<Date>& dates, const Locale& locale,
                        const TimeZone& timeZone);
/// For example "Today at 9:30". `now` decides which days are today and yesterday.
std::string historyLine(Date date, Date now, const Locale& locale, const TimeZone& timeZone);

}  // namespace OrvelCore::AttemptText
