#pragma once

#include <cstdint>

/// The window server's own blur, which is not in the public headers. Both symbols are bound at run
/// time, so that the program starts on a system without them.
namespace OrvelBlur::SkyLight {

bool isAvailable();
/// Points. False when the window server refuses, or the number is no window's.
bool setRadius(int radius, std::int64_t windowNumber);

}  // namespace OrvelBlur::SkyLight
