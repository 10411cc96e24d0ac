#include "OrvelBlur/X11/PanelFront.h"

#include <algorithm>

#include "OrvelSystem/X11/WindowManager.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

/// The area of the only child of a frame, in root coordinates; empty if there is none.
PixelRect contentOf(const SourceWindow& source) {
    auto* const c = X11::shared().connection();
    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(c, xcb_query_tree(c, source.window), nullptr));
    if (!tree || xcb_query_tree_children_length(tree.get()) != 1) return {};
    const XReply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
        c, xcb_get_geometry(c, xcb_query_tree_children(tree.get())[0]), nullptr));
    if (!geometry) return {};
    return PixelRect{source.frame.x + geometry->x, source.frame.y + geometry->y, geometry->width,
                     geometry->height}
        .intersected(source.frame);
}

}  // namespace

bool PanelFront::setWindows(const std::vector<OrvelCore::WindowID>& windows) {
    std::vector<xcb_window_t> wanted;
    wanted.reserve(windows.size());
    for (const auto window : windows) wanted.push_back(static_cast<xcb_window_t>(window));
    return std::exchange(wanted_, wanted) != wanted;
}

void PanelFront::update() {
    if (wanted_.empty()) return clear();
    auto& scene = SceneSources::shared();
    if (!changes_) {
        changes_ = scene.subscribe(
            [this](const auto& areas, const auto& redrawn) { handleChange(areas, redrawn); });
        scene.refresh();
        // KWin draws title bars only on the screen. In the picture of a frame there is anything
        // that was on the screen before, so only the window inside the frame is drawn.
        framesAreEmpty_ = OrvelSystem::WindowManager::name().starts_with("KWin");
    }
    drawn_.clear();
    for (auto& source : scene.find(wanted_, window_.frame())) {
        const PixelRect area = framesAreEmpty_ ? contentOf(*source) : source->frame;
        drawn_.push_back({std::move(source), area});
    }
}

void PanelFront::clear() {
    changes_.reset();
    drawn_.clear();
}

PixelRect PanelFront::inPanel(const PixelRect& area) const {
    return {area.x - window_.frame().x, area.y - window_.frame().y, area.width, area.height};
}

void PanelFront::handleChange(const std::vector<PixelRect>& areas,
                              const SceneSources::Sources& redrawn) {
    const auto before = drawn_;
    const bool isHere = std::ranges::any_of(areas, [this](const PixelRect& area) {
        return !area.intersected(window_.frame()).isEmpty();
    });
    if (isHere) update();
    const auto holds = [](const auto& list, const auto& element) {
        return std::ranges::find(list, element) != list.end();
    };
    // Where a window was, the panel itself is drawn again, with the windows of now.
    for (const auto& old : before) {
        if (!holds(drawn_, old)) redraw_(inPanel(old.area));
    }
    for (const auto& window : drawn_) {
        if (!holds(before, window) || holds(redrawn, window.source)) redraw_(inPanel(window.area));
    }
}

bool PanelFront::isIn(const PixelRect& area) const {
    return std::ranges::any_of(drawn_, [&](const Drawn& window) {
        return !inPanel(window.area).intersected(area).isEmpty();
    });
}

void PanelFront::draw(xcb_render_picture_t picture, int originX, int originY,
                      const PixelRect& area) const {
    for (const auto& window : drawn_) {
        const PixelRect part = inPanel(window.area).intersected(area);
        if (part.isEmpty()) continue;
        const PixelRect frame = inPanel(window.source->frame);
        RenderServer::shared().drawScaled(
            window.source->hasAlpha ? XCB_RENDER_PICT_OP_OVER : XCB_RENDER_PICT_OP_SRC,
            window.source->picture.id(), picture, 1, 1, part.x - frame.x, part.y - frame.y,
            {part.x - originX, part.y - originY, part.width, part.height});
    }
}

}  // namespace OrvelBlur
