#include "OrvelBlur/X11/PanelScene.h"

#include <algorithm>
#include <cmath>

#include "OrvelSystem/Qt/QtScreens.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

using OrvelSystem::X11;

namespace {

constexpr int scale = BlurPyramid::sceneScale;

PixelRect wholeOf(const Canvas& canvas) {
    return {0, 0, canvas.size.width, canvas.size.height};
}

}  // namespace

bool PanelScene::isBlurring() const {
    return std::holds_alternative<OverlayPanel::ServerBlur>(layers_.backdrop) &&
           RenderServer::shared().canBlur();
}

void PanelScene::start() {
    if (!isBlurring()) return;
    changes_ = SceneSources::shared().subscribe(
        [this](const auto& areas, const auto& redrawn) { handleChange(areas, redrawn); });
    if (window_.isAttached()) {
        SceneSources::shared().refresh();
        compose();
    } else {
        capture();
    }
}

void PanelScene::handleChange(const std::vector<PixelRect>& areas,
                              const SceneSources::Sources& redrawn) {
    const auto isHere = [this](const PixelRect& area) {
        return !area.intersected(window_.frame()).isEmpty();
    };
    // Only redrawn windows that the scene is made of count: this panel's own drawing, or that of a
    // panel above, must not trigger the next.
    const auto isDrawn = [this](const auto& source) {
        return std::ranges::find(windows_, source) != windows_.end();
    };
    if (std::ranges::none_of(areas, isHere) && std::ranges::none_of(redrawn, isDrawn)) return;
    compose();
    changed_();
}

void PanelScene::move(const PixelRect& before) {
    if (!isBlurring()) return;
    // A window that begins to move must not wait until the server keeps all windows below it, so
    // for the moment their contents are taken from the screen.
    if (window_.isAttached() && !before.contains(window_.frame())) {
        capture();
        drawWindows(captured_);
        SceneSources::shared().invalidate(window_.frame());
    } else {
        compose();
    }
}

void PanelScene::blur() {
    if (!isBlurring()) return;
    const Canvas& scene = composed_.picture ? composed_ : captured_;
    // The radius is in points, as is the size of the text that it has to hide.
    const PixelRect& frame = window_.frame();
    const double density = OrvelSystem::QtScreens::scaleAt(
        {frame.x + frame.width / 2.0, frame.y + frame.height / 2.0});
    const Canvas& blurred = pyramid_.blur(scene, layers_.radius * density);
    blurred_ = &blurred;
    // A flat colour looks the same when scaled up, so it is applied where there are fewer pixels.
    OrvelCore::Color tint = layers_.tint;
    tint.alpha *= layers_.tintOpacity;
    RenderServer::shared().fill(XCB_RENDER_PICT_OP_OVER, blurred.picture.id(), tint,
                                wholeOf(blurred));
}

void PanelScene::clear() {
    captured_ = {};
    composed_ = {};
    windows_.clear();
    pyramid_ = {};
    blurred_ = nullptr;
}

PixelSize PanelScene::size() const {
    const PixelRect& frame = window_.frame();
    return {(frame.width + scale - 1) / scale, (frame.height + scale - 1) / scale};
}

/// A cover extends beyond its window by one pixel on each side. The backdrop ignores that margin:
/// the window's own edge is extended, so the windows below need not be kept for it.
PixelRect PanelScene::neededArea() const {
    const PixelRect& frame = window_.frame();
    if (!window_.isAttached()) return frame;
    return {frame.x + 1, frame.y + 1, frame.width - 2, frame.height - 2};
}

bool PanelScene::fillsScene(const SourceWindow& source) const {
    return !source.hasAlpha && source.frame.contains(neededArea());
}

void PanelScene::capture() {
    auto& server = RenderServer::shared();
    captured_ = server.makeCanvas(size(), false);
    const auto screen = server.makePicture(X11::shared().root(), server.rootFormat(), true);
    server.drawScaled(XCB_RENDER_PICT_OP_SRC, screen.id(), captured_.picture.id(), scale, scale,
                      window_.frame().x, window_.frame().y, wholeOf(captured_));
    composed_ = {};
}

void PanelScene::compose() {
    if (composed_.size != size()) composed_ = RenderServer::shared().makeCanvas(size(), false);
    windows_ = SceneSources::shared().below(window_.id(), neededArea());
    if (windows_.empty() || !fillsScene(*windows_.front())) drawBackground();
    drawWindows(composed_);
}

void PanelScene::drawBackground() {
    auto& server = RenderServer::shared();
    const PixelRect all = wholeOf(composed_);
    if (const auto wallpaper = SceneSources::shared().wallpaper()) {
        const std::uint32_t repeat = XCB_RENDER_REPEAT_NORMAL;
        xcb_render_change_picture(X11::shared().connection(), wallpaper.id(), XCB_RENDER_CP_REPEAT,
                                  &repeat);
        server.drawScaled(XCB_RENDER_PICT_OP_SRC, wallpaper.id(), composed_.picture.id(), scale,
                          scale, window_.frame().x, window_.frame().y, all);
    } else if (captured_.picture) {
        // A root window without a wallpaper cannot be read while it is covered; the earlier capture
        // is used.
        server.drawScaled(XCB_RENDER_PICT_OP_SRC, captured_.picture.id(), composed_.picture.id(),
                          static_cast<double>(captured_.size.width) / composed_.size.width,
                          static_cast<double>(captured_.size.height) / composed_.size.height, 0, 0,
                          all);
    } else {
        OrvelCore::Color opaque = layers_.tint;
        opaque.alpha = 1;
        server.fill(XCB_RENDER_PICT_OP_SRC, composed_.picture.id(), opaque, all);
    }
}

void PanelScene::drawWindows(const Canvas& canvas) {
    const PixelRect all = wholeOf(canvas);
    for (const auto& source : windows_) {
        // The window's position in the scene, and the scene pixels that it touches.
        const double left = static_cast<double>(source->frame.x - window_.frame().x) / scale;
        const double top = static_cast<double>(source->frame.y - window_.frame().y) / scale;
        const int x = static_cast<int>(std::floor(left));
        const int y = static_cast<int>(std::floor(top));
        const int right =
            static_cast<int>(std::ceil(left + static_cast<double>(source->frame.width) / scale));
        const int bottom =
            static_cast<int>(std::ceil(top + static_cast<double>(source->frame.height) / scale));
        const PixelRect to =
            fillsScene(*source) ? all : PixelRect{x, y, right - x, bottom - y}.intersected(all);
        if (to.isEmpty()) continue;
        RenderServer::shared().drawScaled(
            source->hasAlpha ? XCB_RENDER_PICT_OP_OVER : XCB_RENDER_PICT_OP_SRC,
            source->picture.id(), canvas.picture.id(), scale, scale, (to.x - left) * scale,
            (to.y - top) * scale, to);
    }
}

}  // namespace OrvelBlur
