#pragma once

#include <string>
#include <vector>

#include "OrvelCore/Date.h"
#include "OrvelCore/Text.h"

/// Sentences about failed passwords.
namespace OrvelCore::AttemptText {

/// Reads oddly for a count of 0, which is never shown.
std::string toastTitle(int count);
/// Names the first two of `dates`, in the order given; empty for none.
std::string toastDetail(const std::vector<Date>& dates, const Locale& locale,
                        const TimeZone& timeZone);
std::string historyLine(Date date, Date now, const Locale& locale, const TimeZone& timeZone);

}  // namespace OrvelCore::AttemptText
