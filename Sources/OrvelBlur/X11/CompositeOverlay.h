#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "OrvelBlur/X11/RenderServer.h"
#include "OrvelCore/WeakList.h"
#include "OrvelSystem/X11/OverlayWindow.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

/// The server's overlay window while a lock holds it: the panels of the lock's level draw onto it
/// what they show. A window that another program raises is put below the panels again, but only
/// after the server has reported it. The composite overlay hides that window until then. Main
/// thread only.
class CompositeOverlay {
  public:
    static CompositeOverlay& shared();

    /// Does nothing while it is held. Returns false and changes nothing where it is not available:
    /// under a compositing manager, which draws on it itself, and where the server cannot blur.
    /// `color`, a pixel value of the root visual, is shown where no panel is.
    bool hold(std::uint32_t color);
    void release();

    struct Panel {
        xcb_window_t window = XCB_NONE;
        /// In root coordinates, in pixels; empty while the panel is not shown.
        std::function<PixelRect()> frame;
        /// Draws the whole panel onto the picture of `pictureFor`.
        std::function<void()> draw;
    };
    [[nodiscard]] OrvelCore::Subscription subscribe(Panel panel);
    bool isHeld() const { return bool(picture_); }
    /// As `OverlayWindow::hasLocker`.
    bool hasLocker() const { return window_.hasLocker(); }
    /// The picture on which a subscribed panel must draw, in root coordinates. 0 means that it must
    /// not draw: this is not held, or a newer panel overlaps this one, as when this one still fades
    /// out while the next lock is up.
    xcb_render_picture_t pictureFor(xcb_window_t window) const;
    /// Clears `area` (root coordinates, in pixels), which a panel has left. Does nothing while this
    /// is not held.
    void leave(const PixelRect& area);

  private:
    CompositeOverlay();
    void drawAll();
    void handle(const xcb_generic_event_t& event);

    OrvelSystem::OverlayWindow window_;
    ServerPicture picture_;
    std::uint32_t color_ = 0;
    OrvelCore::Subscription events_;
    OrvelCore::WeakList<Panel> panels_;
};

}  // namespace OrvelBlur
