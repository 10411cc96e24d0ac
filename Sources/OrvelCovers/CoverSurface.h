#pragma once

#include <vector>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelCovers {

/// The cover over one window. Main thread only.
class CoverSurface {
  public:
    CoverSurface() = default;
    CoverSurface(const CoverSurface&) = delete;
    CoverSurface& operator=(const CoverSurface&) = delete;
    virtual ~CoverSurface() = default;

    /// The cover's number in the window server's list of windows.
    virtual OrvelCore::WindowID windowNumber() const = 0;
    /// The window number of the cover's front-most part, above which anything on top of the cover
    /// is stacked.
    virtual OrvelCore::WindowID frontNumber() const { return windowNumber(); }
    /// In window-server coordinates.
    virtual void place(const OrvelCore::Rect& rect) = 0;
    /// Puts the cover directly above the window `above`; no effect if that window is gone.
    virtual void order(OrvelCore::WindowID above) = 0;
    /// Draws these windows onto the cover, where the window server draws the cover in front of
    /// them. Frontmost first.
    virtual void drawInFront(const std::vector<OrvelCore::WindowID>& /*windows*/) {}
    /// Shows the cover at full strength at once, unless it is to fade in.
    virtual void show(bool fade) = 0;
    /// Removes the cover at once, because a cover must not outlast its window.
    virtual void remove() = 0;
};

}  // namespace OrvelCovers
