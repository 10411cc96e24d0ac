#include "OrvelBlur/X11/PanelScene.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

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
    changes_ =
        SceneSources::shared().subscribe([this](const auto& change) { handleChange(change); });
    if (window_.isAttached()) {
        SceneSources::shared().refresh();
        compose();
    } else {
        capture();
    }
}

void PanelScene::handleChange(const SceneSources::Change& change) {
    const auto isHere = [this](const PixelRect& area) {
        return !area.intersected(window_.frame()).isEmpty();
    };
    auto drawnAnew = change.drawn;
    // Only redrawn windows that the scene is made of count: this panel's own drawing, or that of a
    // panel above, must not trigger the next.
    for (const auto& [source, area] : change.redrawn) {
        if (std::ranges::find(windows_, source) != windows_.end()) drawnAnew.push_back(area);
    }
    if (std::ranges::none_of(change.stacked, isHere) && std::ranges::none_of(drawnAnew, isHere))
        return;
    compose(drawnAnew);
    if (!unblurred_.empty()) changed_();
}

void PanelScene::catchUp() {
    if (isBlurring()) SceneSources::shared().catchUp();
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

std::vector<PixelRect> PanelScene::blur() {
    if (!isBlurring()) return {};
    const Canvas& scene = composed_.picture ? composed_ : captured_;
    // The radius is in points, as is the size of the text that it has to hide.
    const PixelRect& frame = window_.frame();
    const double density = OrvelSystem::QtScreens::scaleAt(
        {frame.x + frame.width / 2.0, frame.y + frame.height / 2.0});
    Blurring now{layers_.radius * density, layers_.tint};
    now.tint.alpha *= layers_.tintOpacity;
    if (std::exchange(blurring_, now) != now) unblurred_ = {wholeOf(scene)};
    const auto changed = std::exchange(unblurred_, {});
    if (changed.empty()) return {};
    blurred_ = &pyramid_.blur(scene, now.radius, now.tint, changed);
    std::vector<PixelRect> areas;
    for (const auto& part : BlurPyramid::reach(scene.size, now.radius, changed)) {
        const auto edge = part.grown(1);
        areas.push_back({edge.x * scale, edge.y * scale, edge.width * scale, edge.height * scale});
    }
    return areas;
}

void PanelScene::rehearse() {
    if (!isBlurring()) return;
    capture();
    blur();
    clear();
}

void PanelScene::clear() {
    // Making these anew takes the server as long as drawing them.
    if (window_.level() >= WindowLevel::lock) {
        auto& server = RenderServer::shared();
        server.keep(std::move(captured_));
        server.keep(std::move(composed_));
        pyramid_.keepCanvases();
    }
    captured_ = {};
    composed_ = {};
    windows_.clear();
    frames_.clear();
    unblurred_.clear();
    blurring_.reset();
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
    unblurred_ = {wholeOf(captured_)};
}

/// Draws what has changed since the last time: the windows that came, went or moved, and the areas
/// `drawnAnew`, in root coordinates.
void PanelScene::compose(const std::vector<PixelRect>& drawnAnew) {
    auto windows = SceneSources::shared().below(window_.id(), neededArea());
    std::vector<PixelRect> changed;
    if (composed_.size != size() || composedFrame_ != window_.frame()) {
        if (composed_.size != size()) composed_ = RenderServer::shared().makeCanvas(size(), false);
        composedFrame_ = window_.frame();
        changed = {wholeOf(composed_)};
    } else {
        changed = differences(windows);
        changed.insert(changed.end(), drawnAnew.begin(), drawnAnew.end());
        changed = inScene(changed);
    }
    windows_ = std::move(windows);
    frames_.clear();
    for (const auto& source : windows_) frames_.push_back(source->frame);
    if (changed.empty()) return;
    RenderServer::shared().drawWithin(changed, composed_, [this] {
        if (windows_.empty() || !fillsScene(*windows_.front())) drawBackground();
        drawWindows(composed_);
    });
    unblurred_.insert(unblurred_.end(), changed.begin(), changed.end());
}

/// Where `now` shows something else than `windows_` did, in root coordinates.
std::vector<PixelRect> PanelScene::differences(const SceneSources::Sources& now) const {
    std::vector<PixelRect> areas;
    std::unordered_map<const SourceWindow*, std::size_t> places;
    for (std::size_t i = 0; i < windows_.size(); ++i) places.emplace(windows_[i].get(), i);
    std::size_t highest = 0;
    for (const auto& source : now) {
        const auto known = places.find(source.get());
        if (known == places.end()) {
            areas.push_back(source->frame);
            continue;
        }
        const std::size_t place = known->second;
        places.erase(known);
        if (frames_[place] != source->frame) areas.push_back(frames_[place]);
        // One that was above another and no longer is.
        if (frames_[place] != source->frame || place < highest) areas.push_back(source->frame);
        highest = std::max(highest, place);
    }
    for (const auto& [source, place] : places) areas.push_back(frames_[place]);
    return areas;
}

/// The pixels of the scene that root coordinates touch. Many areas become one around all of them.
std::vector<PixelRect> PanelScene::inScene(const std::vector<PixelRect>& areas) const {
    constexpr std::size_t most = 8;
    const PixelRect all = wholeOf(composed_);
    const PixelRect& frame = window_.frame();
    std::vector<PixelRect> parts;
    for (const auto& area : areas) {
        // A pixel of the scene is interpolated from its neighbours on the screen.
        const PixelRect near = area.grown(1).intersected(frame.grown(scale));
        if (near.isEmpty()) continue;
        const int left = (near.x - frame.x) / scale - 1;
        const int top = (near.y - frame.y) / scale - 1;
        const int right = (near.x + near.width - frame.x) / scale + 1;
        const int bottom = (near.y + near.height - frame.y) / scale + 1;
        const auto part = PixelRect{left, top, right - left, bottom - top}.intersected(all);
        if (!part.isEmpty()) parts.push_back(part);
    }
    if (parts.size() <= most) return parts;
    PixelRect around = parts.front();
    for (const auto& part : parts) around = around.united(part);
    return {around};
}

void PanelScene::drawBackground() {
    auto& server = RenderServer::shared();
    const PixelRect all = wholeOf(composed_);
    if (const auto wallpaper = SceneSources::shared().wallpaper(); wallpaper != XCB_NONE) {
        server.drawScaled(XCB_RENDER_PICT_OP_SRC, wallpaper, composed_.picture.id(), scale, scale,
                          window_.frame().x, window_.frame().y, all);
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
