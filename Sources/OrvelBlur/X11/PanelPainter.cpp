#include "OrvelBlur/X11/PanelPainter.h"

#include "OrvelBlur/X11/CompositeOverlay.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

using OrvelCore::Color;
using OrvelSystem::X11;

namespace {

/// Composites the part of `source` that begins at `x`, `y` into `area` of `target`. The mask may be
/// 0 for none.
void composite(std::uint8_t operation, xcb_render_picture_t source, xcb_render_picture_t mask,
               xcb_render_picture_t target, int x, int y, const PixelRect& area) {
    xcb_render_composite(X11::shared().connection(), operation, source, mask, target,
                         static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0, 0,
                         static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                         static_cast<std::uint16_t>(area.width),
                         static_cast<std::uint16_t>(area.height));
}

void compositeOver(xcb_render_picture_t source, double opacity, xcb_render_picture_t target, int x,
                   int y, const PixelRect& area) {
    if (opacity <= 0) return;
    const auto mask =
        opacity < 1 ? RenderServer::shared().makeSolid({0, 0, 0, opacity}) : ServerPicture();
    composite(XCB_RENDER_PICT_OP_OVER, source, mask.id(), target, x, y, area);
}

/// What hides everything behind the panel where nothing can be blurred.
Color hidingColor(const PanelLayers& layers) {
    const auto* const fill = std::get_if<OverlayPanel::Fill>(&layers.backdrop);
    Color color = fill != nullptr ? fill->color : layers.tint;
    color.alpha = 1;
    return color;
}

}  // namespace

void PanelPainter::paint(const PixelRect& area, const ContentHost* content) {
    const PixelRect visible = area.intersected(window_.bounds());
    if (visible.isEmpty()) return;
    // A server without Render can still hide what is behind the panel.
    if (window_.picture() == 0) return window_.fill(hidingColor(layers_));
    // When the composite overlay is released, the window keeps what the screen shows there and gets
    // an Expose event.
    if (!position_.isUnderCompositeOverlay())
        paintOn({window_.picture(), 0, 0}, visible, content);
    else if (const auto picture = CompositeOverlay::shared().pictureFor(window_.id()); picture != 0)
        paintOn({picture, -window_.frame().x, -window_.frame().y}, visible, content);
}

/// Draws so that the content and the windows in front are never missing for a moment.
void PanelPainter::paintOn(const Target& target, const PixelRect& visible,
                           const ContentHost* content) {
    if (front_.isIn(visible)) {
        const Canvas all =
            RenderServer::shared().makeCanvas({visible.width, visible.height}, false);
        const Target buffer{all.picture.id(), visible.x, visible.y};
        drawLayers(buffer, visible, content);
        front_.draw(buffer.picture, buffer.originX, buffer.originY, visible);
        composite(XCB_RENDER_PICT_OP_SRC, buffer.picture, XCB_RENDER_PICTURE_NONE, target.picture,
                  0, 0, target.inPicture(visible));
        return;
    }
    const PixelRect inner = content != nullptr && content->picture() != 0
                                ? content->frame().intersected(visible)
                                : PixelRect{};
    if (inner.isEmpty()) {
        drawLayers(target, visible, content);
        return;
    }
    const int right = inner.x + inner.width;
    const int bottom = inner.y + inner.height;
    const PixelRect around[4] = {
        {visible.x, visible.y, visible.width, inner.y - visible.y},
        {visible.x, inner.y, inner.x - visible.x, inner.height},
        {right, inner.y, visible.x + visible.width - right, inner.height},
        {visible.x, bottom, visible.width, visible.y + visible.height - bottom}};
    for (const auto& strip : around) {
        if (!strip.isEmpty()) drawLayers(target, strip, content);
    }
    const PixelRect& frame = content->frame();
    const PixelSize size{frame.width, frame.height};
    if (buffer_.size != size) buffer_ = RenderServer::shared().makeCanvas(size, false);
    const Target buffer{buffer_.picture.id(), frame.x, frame.y};
    drawLayers(buffer, inner, content);
    const PixelRect from = buffer.inPicture(inner);
    composite(XCB_RENDER_PICT_OP_SRC, buffer.picture, XCB_RENDER_PICTURE_NONE, target.picture,
              from.x, from.y, target.inPicture(inner));
}

void PanelPainter::drawLayers(const Target& target, const PixelRect& area,
                              const ContentHost* content) {
    drawBackdrop(target, area);
    compositeOver(RenderServer::shared().grain(), layers_.grainOpacity, target.picture, area.x,
                  area.y, target.inPicture(area));
    if (content == nullptr || content->picture() == 0) return;
    const PixelRect inner = content->frame().intersected(area);
    if (inner.isEmpty()) return;
    compositeOver(content->picture(), layers_.contentOpacity, target.picture,
                  inner.x - content->frame().x, inner.y - content->frame().y,
                  target.inPicture(inner));
}

void PanelPainter::drawBackdrop(const Target& target, const PixelRect& area) {
    auto& server = RenderServer::shared();
    const PixelRect to = target.inPicture(area);
    if (const Canvas* const blurred = scene_.blurred(); blurred != nullptr) {
        constexpr double scale = 1.0 / BlurPyramid::sceneScale;
        server.drawScaled(XCB_RENDER_PICT_OP_SRC, blurred->picture.id(), target.picture, scale,
                          scale, area.x * scale, area.y * scale, to);
        return;
    }
    // When in doubt, hide: a bare X server has no effect of its own to blur with.
    Color tint = layers_.tint;
    tint.alpha *= layers_.tintOpacity;
    server.fill(XCB_RENDER_PICT_OP_SRC, target.picture, hidingColor(layers_), to);
    server.fill(XCB_RENDER_PICT_OP_OVER, target.picture, tint, to);
}

}  // namespace OrvelBlur
