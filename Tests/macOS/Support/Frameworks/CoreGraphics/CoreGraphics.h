// The window server. Scripted.h has its contents.
#pragma once

#include <cstdint>

using CGWindowID = std::uint32_t;
using CGWindowListOption = std::uint32_t;
using CGDirectDisplayID = std::uint32_t;
using CGError = std::int32_t;

constexpr CGWindowListOption kCGWindowListOptionOnScreenOnly = 1;
constexpr CGWindowListOption kCGWindowListOptionIncludingWindow = 8;
constexpr CGWindowListOption kCGWindowListExcludeDesktopElements = 16;
constexpr CGWindowID kCGNullWindowID = 0;
constexpr CGError kCGErrorSuccess = 0;

extern "C" {
CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption, CGWindowID);
CFArrayRef CGWindowListCreateDescriptionFromArray(CFArrayRef numbers);
CGError CGGetOnlineDisplayList(std::uint32_t room, CGDirectDisplayID*, std::uint32_t* count);
CGRect CGDisplayBounds(CGDirectDisplayID);
CFDictionaryRef CGSessionCopyCurrentDictionary(void);
}
