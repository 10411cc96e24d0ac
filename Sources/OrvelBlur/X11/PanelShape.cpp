#include "OrvelBlur/X11/PanelShape.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

using OrvelSystem::X11;

bool PanelShape::setCornerRadius(double radius) {
    return std::exchange(cornerRadius_, radius) != radius;
}

bool PanelShape::setOpenings(const std::vector<OrvelCore::Rect>& openings) {
    return std::exchange(openings_, openings) != openings;
}

bool PanelShape::setIgnoresMouseEvents(bool ignores) {
    return std::exchange(ignoresMouseEvents_, ignores) != ignores;
}

bool PanelShape::isShaped() const {
    return !openings_.empty() || (cornerRadius_ > 0 && !window_.isAttached());
}

bool PanelShape::differsFrom(const PixelRect& before) const {
    const PixelRect& now = window_.frame();
    // The openings stay where they are on the screen while the window moves.
    if (!openings_.empty()) return before != now;
    return isShaped() && (before.width != now.width || before.height != now.height);
}

void PanelShape::apply() const {
    if (!RenderServer::shared().hasShape()) return;
    auto* const connection = X11::shared().connection();
    const xcb_window_t window = window_.id();
    const auto send = [&](xcb_shape_op_t operation, xcb_shape_sk_t kind,
                          const std::vector<xcb_rectangle_t>& rectangles) {
        xcb_shape_rectangles(connection, operation, kind, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0,
                             static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
    };
    // With no shape mask the server uses the window's rectangle, so resizing needs no update.
    const auto sendNone = [&](xcb_shape_sk_t kind) {
        xcb_shape_mask(connection, XCB_SHAPE_SO_SET, kind, window, 0, 0, XCB_PIXMAP_NONE);
    };
    const bool isRounded = cornerPixels() > 0;
    const auto outline = rows();
    if (isRounded || !openings_.empty())
        send(XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, outline);
    else
        sendNone(XCB_SHAPE_SK_BOUNDING);
    if (!openings_.empty()) send(XCB_SHAPE_SO_SUBTRACT, XCB_SHAPE_SK_BOUNDING, openingsInWindow());
    if (ignoresMouseEvents_)
        send(XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, {});
    else if (isRounded)
        send(XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, outline);
    else
        sendNone(XCB_SHAPE_SK_INPUT);
    X11::shared().flush();
}

int PanelShape::cornerPixels() const {
    // X11 windows have square corners, which a rounded cover would leave visible.
    if (window_.isAttached()) return 0;
    const PixelRect& frame = window_.frame();
    return std::min(static_cast<int>(std::lround(cornerRadius_)),
                    std::min(frame.width, frame.height) / 2);
}

/// The window's rectangle with its corners rounded off, row by row.
std::vector<xcb_rectangle_t> PanelShape::rows() const {
    const PixelRect& frame = window_.frame();
    const int radius = cornerPixels();
    std::vector<xcb_rectangle_t> rows;
    for (int y = 0; y < radius; ++y) {
        const double up = radius - y - 0.5;
        const int inset =
            static_cast<int>(std::lround(radius - std::sqrt(radius * radius - up * up)));
        const auto width = static_cast<std::uint16_t>(frame.width - 2 * inset);
        rows.push_back({static_cast<std::int16_t>(inset), static_cast<std::int16_t>(y), width, 1});
        rows.push_back({static_cast<std::int16_t>(inset),
                        static_cast<std::int16_t>(frame.height - 1 - y), width, 1});
    }
    rows.push_back({0, static_cast<std::int16_t>(radius), static_cast<std::uint16_t>(frame.width),
                    static_cast<std::uint16_t>(frame.height - 2 * radius)});
    return rows;
}

std::vector<xcb_rectangle_t> PanelShape::openingsInWindow() const {
    const PixelRect& frame = window_.frame();
    std::vector<xcb_rectangle_t> open;
    for (const auto& opening : openings_)
        open.push_back({static_cast<std::int16_t>(std::lround(opening.x - frame.x)),
                        static_cast<std::int16_t>(std::lround(opening.y - frame.y)),
                        static_cast<std::uint16_t>(std::lround(opening.width)),
                        static_cast<std::uint16_t>(std::lround(opening.height))});
    return open;
}

}  // namespace OrvelBlur
