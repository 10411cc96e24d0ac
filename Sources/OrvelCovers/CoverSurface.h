#pragma once

#include <cstdint>

#include "OrvelCore/Geometry.h"

namespace OrvelCovers {

/// The blur over one window. Main thread only.
class CoverSurface {
  public:
    CoverSurface() = default;
    CoverSurface(const CoverSurface&) = delete;
    CoverSurface& operator=(const CoverSurface&) = delete;
    virtual ~CoverSurface() = default;

    /// Its number in the window server's list of windows.
    virtual std::int64_t windowNumber() const = 0;
    /// The number of its part that stands in front of all the others: what is to stand on top of
    /// the surface stands above this one.
    virtual std::int64_t frontNumber() const { return windowNumber(); }
    /// In window-server coordinates.
    virtual void place(const OrvelCore::Rect& rect) = 0;
    /// Directly above the window of that number; no effect when it is gone.
    virtual void order(std::int64_t above) = 0;
    /// At full strength at once, unless it is to fade in.
    virtual void show(bool fade) = 0;
    /// At once: a cover never lags behind a window that is gone.
    virtual void remove() = 0;
};

}  // namespace OrvelCovers
