#pragma once

#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelSystem {

/// What the X server knows of the screen at one moment.
///
/// The number of a window is that of the root's child, which is the frame where a window manager
/// makes frames. Bounds are the frame's, less the shadow that a program draws around itself.
/// Layers are 0 for ordinary windows, 3 for those kept above, 20 for docks, 101 for menus and all
/// else that no window manager manages, and far below 0 for the desktop; this program's panels
/// have their own.
struct ScreenPicture {
    /// What the pointer and the modifier keys do.
    struct Inputs {
        /// The primary button is down.
        bool button = false;
        bool option = false;
        /// Option is down and no other modifier but locks.
        bool optionOnly = false;
        /// A key that is no modifier was pressed since Option went down. Which one is never looked
        /// at.
        bool keyPressed = false;
        bool operator==(const Inputs&) const = default;
    };

    /// Those on the screen, front-most first.
    std::vector<OrvelCore::WindowInfo> windows;
    /// The primary one first.
    std::vector<OrvelCore::Rect> displays;
    Inputs inputs;
    bool operator==(const ScreenPicture&) const = default;
};

}  // namespace OrvelSystem
