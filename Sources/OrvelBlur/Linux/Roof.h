#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>

#include "OrvelBlur/Linux/RenderServer.h"
#include "OrvelSystem/Linux/OverlayWindow.h"

namespace OrvelBlur {

/// A lock's roof over the screen: the server's overlay window, onto which panels of the lock's
/// level draw what they show. A window that comes to the top is put below the panels again, but
/// only after the server has told of it; under the roof it is not seen until then either. Main
/// thread only.
class Roof {
  public:
    static Roof& shared();

    /// Harmless while it is held. False, and nothing changes, where it can't be had: under a
    /// compositing manager, which does the drawing itself, and where the server can't blur. `color`
    /// shows where no panel is.
    bool hold(std::uint32_t color);
    void release();

    using Subscription = std::shared_ptr<void>;
    /// `draw` runs when all that a panel shows is to be drawn on the roof.
    [[nodiscard]] Subscription subscribe(std::function<void()> draw);
    /// What to draw on, in root coordinates; 0 while it is not held.
    xcb_render_picture_t picture() const { return picture_.id(); }
    /// For a panel that leaves `area` (root coordinates). Nothing while it is not held.
    void leave(const PixelRect& area);

  private:
    Roof();
    void drawAll();

    OrvelSystem::OverlayWindow window_;
    ServerPicture picture_;
    std::list<std::weak_ptr<std::function<void()>>> panels_;
};

}  // namespace OrvelBlur
