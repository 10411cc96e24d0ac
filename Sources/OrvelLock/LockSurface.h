#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "OrvelCore/Geometry.h"
#include "OrvelUI/LockCardModel.h"
#include "OrvelUI/NotchMetrics.h"

namespace OrvelLock {

enum class LockContent {
    card,  ///< The lock card, which takes the password.
    pill,  ///< What the other displays show.
};

/// What a cover shows on top of its blur; the platform makes the view, dark in any appearance.
struct LockSurfaceContent {
    LockContent kind = LockContent::pill;
    /// Outlives the surface.
    OrvelUI::LockCardModel* model = nullptr;
    /// Of the surface's own display.
    std::optional<OrvelUI::NotchMetrics> notch;
    bool operator==(const LockSurfaceContent&) const = default;
};

/// The cover of one display.
class LockSurface {
  public:
    LockSurface() = default;
    LockSurface(const LockSurface&) = delete;
    LockSurface& operator=(const LockSurface&) = delete;
    virtual ~LockSurface() = default;

    /// In window-server coordinates.
    virtual OrvelCore::Rect frame() const = 0;
    virtual bool acceptsKeyboard() const = 0;
    virtual void setAcceptsKeyboard(bool accepts) = 0;
    /// Whether typing goes here.
    virtual bool isKey() const = 0;
    /// Whether the window of that number in the window server is this cover's.
    virtual bool owns(std::uint64_t window) const = 0;
    virtual void makeKey() = 0;
    virtual void setFrame(const OrvelCore::Rect& frame) = 0;
    /// Nothing takes the old content away.
    virtual void setContent(const std::optional<LockSurfaceContent>& content) = 0;
    /// `duration` in seconds, 0 for at once; `radius` of the blur.
    virtual void show(int radius, double duration) = 0;
    /// `completion` runs once nothing shows any more, before returning when `duration` is 0.
    virtual void hide(double duration, std::function<void()> completion) = 0;
    /// Takes the cover away at once.
    virtual void remove() = 0;
};

}  // namespace OrvelLock
