#pragma once

#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelSystem {

/// A snapshot of the windows and inputs that the X server reports. It contains no pixels.
///
/// The number of a window is that of the root's child, which is the frame if the window manager
/// adds frames. Bounds are those of the frame, in pixels of the root window, without the shadow
/// that a program draws around itself. Layers are 0 for ordinary windows, 3 for windows kept above
/// others, 20 for docks, 101 for menus and all other unmanaged windows, and far below 0 for the
/// desktop; this program's panels have their own layers.
struct ScreenState {
    /// The state of the pointer and the modifier keys.
    struct Inputs {
        /// Whether the primary button is pressed.
        bool button = false;
        bool option = false;
        /// Whether Option is pressed and no other modifier except locks.
        bool optionOnly = false;
        /// Whether a key other than a modifier was pressed since Option went down. Which key it was
        /// is never examined.
        bool keyPressed = false;
        bool operator==(const Inputs&) const = default;
    };

    /// The windows on the screen, frontmost first.
    std::vector<OrvelCore::WindowInfo> windows;
    Inputs inputs;
    bool operator==(const ScreenState&) const = default;
};

}  // namespace OrvelSystem
