#pragma once

#include "OrvelBlur/X11/ContentHost.h"
#include "OrvelBlur/X11/PanelFront.h"
#include "OrvelBlur/X11/PanelScene.h"
#include "OrvelBlur/X11/PanelWindow.h"
#include "OrvelBlur/X11/StackPosition.h"

namespace OrvelBlur {

/// Draws the layers of a panel, from the backdrop to the windows in front, into the panel's window
/// or onto the composite overlay above it. Areas are relative to the panel, in pixels. Main thread
/// only.
class PanelPainter {
  public:
    /// All five must outlive this object.
    PanelPainter(const PanelLayers& layers, PanelWindow& window, const StackPosition& position,
                 const PanelScene& scene, const PanelFront& front)
        : layers_(layers), window_(window), position_(position), scene_(scene), front_(front) {}

    /// Draws `area`, or what of it is inside the panel. `content` is null while the panel has none.
    void paint(const PixelRect& area, const ContentHost* content);
    /// Frees what is kept between two calls of `paint`.
    void clear() { buffer_ = {}; }

  private:
    /// A picture to draw on, and the point of the panel that is at the picture's origin.
    struct Target {
        xcb_render_picture_t picture = 0;
        int originX = 0;
        int originY = 0;
        PixelRect inPicture(const PixelRect& area) const {
            return {area.x - originX, area.y - originY, area.width, area.height};
        }
    };

    void paintOn(const Target& target, const PixelRect& visible, const ContentHost* content);
    void drawLayers(const Target& target, const PixelRect& area, const ContentHost* content);
    void drawBackdrop(const Target& target, const PixelRect& area);

    const PanelLayers& layers_;
    PanelWindow& window_;
    const StackPosition& position_;
    const PanelScene& scene_;
    const PanelFront& front_;
    Canvas buffer_;  // where the backdrop and the content are put together, of the content's size
};

}  // namespace OrvelBlur
