#include "OrvelBlur/X11/RenderServer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include <xcb/composite.h>
#include <xcb/shape.h>
#include <xcb/xcb_renderutil.h>
#include <xcb/xfixes.h>

#include "OrvelBlur/Grain.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

xcb_connection_t* connection() {
    return X11::shared().connection();
}

xcb_render_fixed_t fixed(double value) {
    return static_cast<xcb_render_fixed_t>(std::lround(value * 65536));
}

xcb_render_color_t premultiplied(const OrvelCore::Color& color) {
    const auto channel = [](double value) {
        return static_cast<std::uint16_t>(std::lround(std::clamp(value, 0.0, 1.0) * 0xFFFF));
    };
    return {channel(color.red * color.alpha), channel(color.green * color.alpha),
            channel(color.blue * color.alpha), channel(color.alpha)};
}

bool isPresent(xcb_extension_t& extension) {
    const auto* const data = xcb_get_extension_data(connection(), &extension);
    return data != nullptr && data->present != 0;
}

}  // namespace

void freePixmap(std::uint32_t id) {
    xcb_free_pixmap(connection(), id);
}
void freePicture(std::uint32_t id) {
    xcb_render_free_picture(connection(), id);
}
void freeDamage(std::uint32_t id) {
    xcb_damage_destroy(connection(), id);
}

PixelRect PixelRect::intersected(const PixelRect& other) const {
    const int left = std::max(x, other.x);
    const int top = std::max(y, other.y);
    const int right = std::min(x + width, other.x + other.width);
    const int bottom = std::min(y + height, other.y + other.height);
    return {left, top, std::max(right - left, 0), std::max(bottom - top, 0)};
}

PixelRect PixelRect::united(const PixelRect& other) const {
    const int left = std::min(x, other.x);
    const int top = std::min(y, other.y);
    return {left, top, std::max(x + width, other.x + other.width) - left,
            std::max(y + height, other.y + other.height) - top};
}

RenderServer& RenderServer::shared() {
    // Never destroyed: the connection, with all its server resources, closes before statics are
    // destroyed.
    static auto& server = *new RenderServer;
    return server;
}

RenderServer::RenderServer() {
    hasShape_ = isPresent(xcb_shape_id);
    if (!isPresent(xcb_render_id)) return;
    formats_ = xcb_render_util_query_formats(connection());
    if (formats_ == nullptr) return;
    const auto* const argb =
        xcb_render_util_find_standard_format(formats_, XCB_PICT_STANDARD_ARGB_32);
    const auto root = formatOf(X11::shared().screen()->root_visual);
    if (argb == nullptr || !root) return;
    argbFormat_ = argb->id;
    rootFormat_ = *root;

    if (!isPresent(xcb_composite_id) || !isPresent(xcb_damage_id) || !isPresent(xcb_xfixes_id))
        return;
    // Each extension requires its client to state a version before any other request.
    const auto composite = xcb_composite_query_version(connection(), 0, 4);
    const auto damage = xcb_damage_query_version(connection(), 1, 1);
    const auto fixes = xcb_xfixes_query_version(connection(), 5, 0);
    const XReply<xcb_composite_query_version_reply_t> compositeReply(
        xcb_composite_query_version_reply(connection(), composite, nullptr));
    const XReply<xcb_damage_query_version_reply_t> damageReply(
        xcb_damage_query_version_reply(connection(), damage, nullptr));
    const XReply<xcb_xfixes_query_version_reply_t> fixesReply(
        xcb_xfixes_query_version_reply(connection(), fixes, nullptr));
    // Naming a window's pixmap requires Composite 0.2.
    canBlur_ = compositeReply && damageReply && fixesReply &&
               (compositeReply->major_version > 0 || compositeReply->minor_version >= 2);
    damageEvent_ = xcb_get_extension_data(connection(), &xcb_damage_id)->first_event;
}

std::optional<xcb_render_pictformat_t> RenderServer::formatOf(xcb_visualid_t visual) const {
    if (formats_ == nullptr) return {};
    const auto* const found = xcb_render_util_find_visual_format(formats_, visual);
    if (found == nullptr) return {};
    return found->format;
}

Canvas RenderServer::makeCanvas(PixelSize size, bool alpha) {
    const auto kept = std::ranges::find(kept_, size, &Canvas::size);
    if (!alpha && kept != kept_.end()) {
        Canvas canvas = std::move(*kept);
        kept_.erase(kept);
        return canvas;
    }
    const auto& x11 = X11::shared();
    const std::uint32_t pixmap = xcb_generate_id(connection());
    xcb_create_pixmap(connection(), alpha ? 32 : x11.screen()->root_depth, pixmap, x11.root(),
                      static_cast<std::uint16_t>(size.width),
                      static_cast<std::uint16_t>(size.height));
    Canvas canvas{size, ServerPixmap(pixmap), {}};
    canvas.picture = makePicture(pixmap, alpha ? argbFormat_ : rootFormat_, false);
    return canvas;
}

void RenderServer::keep(Canvas canvas) {
    if (!canvas.picture) return;
    kept_.push_back(std::move(canvas));
    const auto* const screen = X11::shared().screen();
    long rest = static_cast<long>(screen->width_in_pixels) * screen->height_in_pixels;
    auto first = kept_.end();
    while (first != kept_.begin()) {
        const PixelSize size = std::prev(first)->size;
        rest -= static_cast<long>(size.width) * size.height;
        if (rest < 0) break;
        --first;
    }
    kept_.erase(kept_.begin(), first);
}

ServerPicture RenderServer::makePicture(xcb_drawable_t drawable, xcb_render_pictformat_t format,
                                        bool inferiors) const {
    const std::uint32_t picture = xcb_generate_id(connection());
    // Values must be in the order of their mask bits.
    std::uint32_t mask = XCB_RENDER_CP_REPEAT;
    std::uint32_t values[2] = {XCB_RENDER_REPEAT_PAD, XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS};
    if (inferiors) mask |= XCB_RENDER_CP_SUBWINDOW_MODE;
    xcb_render_create_picture(connection(), picture, drawable, format, mask, values);
    static constexpr char filter[] = "bilinear";
    xcb_render_set_picture_filter(connection(), picture, std::strlen(filter), filter, 0, nullptr);
    return ServerPicture(picture);
}

ServerPicture RenderServer::makeSolid(const OrvelCore::Color& color) const {
    const std::uint32_t picture = xcb_generate_id(connection());
    xcb_render_create_solid_fill(connection(), picture, premultiplied(color));
    return ServerPicture(picture);
}

xcb_render_picture_t RenderServer::grain() {
    if (grain_.picture) return grain_.picture.id();
    constexpr int size = Grain::tileSize;
    const auto grey = Grain::pixels(size, Grain::seed);
    const auto alpha = static_cast<std::uint32_t>(std::lround(Grain::opacity * 255));
    std::vector<std::uint32_t> argb(grey.size());
    std::transform(grey.begin(), grey.end(), argb.begin(), [alpha](std::uint32_t level) {
        const std::uint32_t shade = (level * alpha + 127) / 255;
        return alpha << 24U | shade << 16U | shade << 8U | shade;
    });
    // The pixels are sent in this machine's byte order, which a local server shares. On a remote
    // server of the opposite byte order the grain differs, which is harmless.
    grain_ = makeCanvas({size, size}, true);
    const std::uint32_t gc = xcb_generate_id(connection());
    xcb_create_gc(connection(), gc, grain_.pixmap.id(), 0, nullptr);
    xcb_put_image(connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, grain_.pixmap.id(), gc, size, size, 0, 0,
                  0, 32, static_cast<std::uint32_t>(argb.size() * 4),
                  reinterpret_cast<const std::uint8_t*>(argb.data()));
    xcb_free_gc(connection(), gc);
    const std::uint32_t repeat = XCB_RENDER_REPEAT_NORMAL;
    xcb_render_change_picture(connection(), grain_.picture.id(), XCB_RENDER_CP_REPEAT, &repeat);
    return grain_.picture.id();
}

void RenderServer::drawScaled(std::uint8_t operation, xcb_render_picture_t source,
                              xcb_render_picture_t target, double scaleX, double scaleY,
                              double sourceX, double sourceY, const PixelRect& area) const {
    // The transform is relative to the origin of the drawn area, so the offset of the area is left
    // out.
    const xcb_render_transform_t transform{
        fixed(scaleX), 0, fixed(sourceX), 0, fixed(scaleY), fixed(sourceY), 0, 0, fixed(1)};
    xcb_render_set_picture_transform(connection(), source, transform);
    xcb_render_composite(connection(), operation, source, XCB_RENDER_PICTURE_NONE, target, 0, 0, 0,
                         0, static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                         static_cast<std::uint16_t>(area.width),
                         static_cast<std::uint16_t>(area.height));
}

void RenderServer::drawWithin(const std::vector<PixelRect>& areas, const Canvas& canvas,
                              const std::function<void()>& draw) const {
    const PixelRect all{0, 0, canvas.size.width, canvas.size.height};
    if (areas.size() == 1 && areas.front().contains(all)) return draw();
    std::vector<xcb_rectangle_t> rectangles;
    rectangles.reserve(areas.size());
    for (const auto& area : areas)
        rectangles.push_back({static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                              static_cast<std::uint16_t>(area.width),
                              static_cast<std::uint16_t>(area.height)});
    xcb_render_set_picture_clip_rectangles(connection(), canvas.picture.id(), 0, 0,
                                           static_cast<std::uint32_t>(rectangles.size()),
                                           rectangles.data());
    draw();
    // The server would also apply it where the picture is the source.
    constexpr std::uint32_t none = XCB_PIXMAP_NONE;
    xcb_render_change_picture(connection(), canvas.picture.id(), XCB_RENDER_CP_CLIP_MASK, &none);
}

void RenderServer::fill(std::uint8_t operation, xcb_render_picture_t target,
                        const OrvelCore::Color& color, const PixelRect& area) const {
    const xcb_rectangle_t rectangle{
        static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
        static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height)};
    xcb_render_fill_rectangles(connection(), operation, target, premultiplied(color), 1,
                               &rectangle);
}

}  // namespace OrvelBlur
