#pragma once

#include <functional>
#include <optional>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelUI/LockCardModel.h"
#include "OrvelUI/NotchMetrics.h"

namespace OrvelLock {

enum class LockContent {
    card,  ///< The lock card, which takes the password.
    pill,  ///< The pill that the other displays show.
};

/// What a cover shows on top of its blur. The platform makes the view, which is dark in any
/// appearance.
struct LockSurfaceContent {
    LockContent kind = LockContent::pill;
    /// Must outlive the surface.
    OrvelUI::LockCardModel* model = nullptr;
    /// The notch of the surface's own display; `nullopt` without one.
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
    /// Whether this cover receives the keyboard input.
    virtual bool isKey() const = 0;
    /// Whether `window`, a window number in the window server, is this cover's window.
    virtual bool owns(OrvelCore::WindowID window) const = 0;
    virtual void makeKey() = 0;
    /// In window-server coordinates.
    virtual void setFrame(const OrvelCore::Rect& frame) = 0;
    /// `nullopt` removes the content.
    virtual void setContent(const std::optional<LockSurfaceContent>& content) = 0;
    /// `radius` of the blur in points; `duration` of the fade in seconds, 0 for none.
    virtual void show(int radius, double duration) = 0;
    /// `completion` runs when nothing is shown any more; if `duration` is 0, before `hide` returns.
    virtual void hide(double duration, std::function<void()> completion) = 0;
    /// Removes the cover without a fade.
    virtual void remove() = 0;
};

}  // namespace OrvelLock
