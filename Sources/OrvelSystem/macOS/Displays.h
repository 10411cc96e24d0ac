#pragma once

#include <cstdint>
#include <vector>

#import <AppKit/AppKit.h>

#include "OrvelCore/Geometry.h"

namespace OrvelSystem {

/// A display as Cocoa describes it.
struct Display {
    /// Different for each display. Constant while the display stays connected, unless the system
    /// does not provide a number.
    std::uint32_t id = 0;
    /// In window-server coordinates.
    OrvelCore::Rect frame;
    NSScreen* screen = nil;

    /// The primary display comes first. Main thread only.
    static std::vector<Display> all();
    static std::vector<OrvelCore::Rect> frames();
    /// Nil if the point is on no display. `point` is in window-server coordinates.
    static NSScreen* screenAt(OrvelCore::Point point);
};

}  // namespace OrvelSystem
