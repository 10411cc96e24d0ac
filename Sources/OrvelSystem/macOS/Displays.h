#pragma once

#include <cstdint>
#include <vector>

#import <AppKit/AppKit.h>

#include "OrvelCore/Geometry.h"

namespace OrvelSystem {

/// A display as Cocoa knows it.
struct Display {
    /// The same while the display stays connected; 0 when the system gives none.
    std::uint32_t id = 0;
    /// In window-server coordinates.
    OrvelCore::Rect frame;
    NSScreen* screen = nil;

    /// The primary one first. Main thread only.
    static std::vector<Display> all();
    static std::vector<OrvelCore::Rect> frames();
    /// Nil when the point is on none.
    static NSScreen* screenAt(OrvelCore::Point point);
};

}  // namespace OrvelSystem
