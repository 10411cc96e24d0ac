#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>

#include "OrvelBlur/X11/RenderServer.h"
#include "OrvelSystem/X11/OverlayWindow.h"
#include "OrvelSystem/X11/X11.h"

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

    struct Panel {
        xcb_window_t window = XCB_NONE;
        /// In root coordinates; empty while it does not show.
        std::function<PixelRect()> frame;
        /// Draws all that it shows, where `pictureFor` has it draw.
        std::function<void()> draw;
    };
    using Subscription = std::shared_ptr<void>;
    [[nodiscard]] Subscription subscribe(Panel panel);
    bool isHeld() const { return bool(picture_); }
    /// What a subscribed panel is to draw on, in root coordinates. 0, and it is to draw nothing,
    /// while it lies behind a newer one, as one that still fades away does when the next lock is
    /// up.
    xcb_render_picture_t pictureFor(xcb_window_t window) const;
    /// For a panel that leaves `area` (root coordinates). Nothing while it is not held.
    void leave(const PixelRect& area);

  private:
    Roof();
    void drawAll();
    void handle(const xcb_generic_event_t& event);

    OrvelSystem::OverlayWindow window_;
    ServerPicture picture_;
    std::uint32_t color_ = 0;
    OrvelSystem::X11::Subscription events_;
    std::list<std::weak_ptr<Panel>> panels_;
};

}  // namespace OrvelBlur
