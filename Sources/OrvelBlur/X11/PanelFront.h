#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "OrvelBlur/X11/PanelWindow.h"
#include "OrvelBlur/X11/SceneSources.h"
#include "OrvelCore/WeakList.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelBlur {

/// The windows of other programs that a panel draws on top of itself, because the compositing
/// manager draws the panel in front of them. Their pictures stay on the server. A window that
/// closes or moves is drawn as it was until the next update, so the panel never has a hole. Main
/// thread only.
class PanelFront {
  public:
    /// `window` must outlive this object. `redraw` draws an area of the panel, in pixels relative
    /// to it, because a window changed there.
    PanelFront(const PanelWindow& window, std::function<void(const PixelRect& area)> redraw)
        : window_(window), redraw_(std::move(redraw)) {}

    /// Returns whether the windows differ. They are drawn after the next `update`.
    bool setWindows(const std::vector<OrvelCore::WindowID>& windows);
    /// Gets the pictures of the windows that now intersect the wanted frame of the panel. Without
    /// windows no request is sent.
    void update();
    /// Gives the pictures back. The windows stay set. Call when the panel is unmapped.
    void clear();

    /// Whether a window is drawn in `area`, in pixels relative to the panel.
    bool isIn(const PixelRect& area) const;
    /// Draws the windows into `area` of the panel. `picture` has the point `originX`, `originY` of
    /// the panel at its origin.
    void draw(xcb_render_picture_t picture, int originX, int originY, const PixelRect& area) const;

  private:
    struct Drawn {
        std::shared_ptr<const SourceWindow> source;
        PixelRect area;  // of the window, in root coordinates
        bool operator==(const Drawn&) const = default;
    };

    PixelRect inPanel(const PixelRect& area) const;
    void handleChange(const std::vector<PixelRect>& areas, const SceneSources::Sources& redrawn);

    const PanelWindow& window_;
    std::function<void(const PixelRect&)> redraw_;
    std::vector<xcb_window_t> wanted_;
    std::vector<Drawn> drawn_;  // bottom first
    bool framesAreEmpty_ = false;
    OrvelCore::Subscription changes_;
};

}  // namespace OrvelBlur
