#pragma once

#include "OrvelCore/WindowInfo.h"

/// The window server's own blur, which is not in the public headers. Both symbols are bound at run
/// time, so that the program also starts on a system without them.
namespace OrvelBlur::SkyLight {

bool isAvailable();
/// `radius` in points. Returns false when the window server refuses, or when there is no window
/// with that number.
bool setRadius(int radius, OrvelCore::WindowID windowNumber);

}  // namespace OrvelBlur::SkyLight
