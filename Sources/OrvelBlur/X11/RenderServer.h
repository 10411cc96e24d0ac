#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include <xcb/damage.h>
#include <xcb/render.h>
#include <xcb/xcb.h>

#include "OrvelCore/Color.h"

namespace OrvelBlur {

/// Owns one resource ID of the X server and frees it.
template <auto Free>
class ServerID {
  public:
    ServerID() = default;
    explicit ServerID(std::uint32_t id) : id_(id) {}
    ServerID(ServerID&& other) noexcept : id_(std::exchange(other.id_, 0)) {}
    ServerID& operator=(ServerID&& other) noexcept {
        if (this != &other) {
            reset();
            id_ = std::exchange(other.id_, 0);
        }
        return *this;
    }
    ~ServerID() { reset(); }

    explicit operator bool() const { return id_ != 0; }
    std::uint32_t id() const { return id_; }
    void reset() {
        if (const std::uint32_t id = std::exchange(id_, 0)) Free(id);
    }

  private:
    std::uint32_t id_ = 0;
};

void freePixmap(std::uint32_t id);
void freePicture(std::uint32_t id);
void freeDamage(std::uint32_t id);
using ServerPixmap = ServerID<freePixmap>;
using ServerPicture = ServerID<freePicture>;
using ServerDamage = ServerID<freeDamage>;

struct PixelSize {
    int width = 0;
    int height = 0;
    bool operator==(const PixelSize&) const = default;
};

/// In pixels, with the origin at the top left.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool isEmpty() const { return width <= 0 || height <= 0; }
    PixelRect intersected(const PixelRect& other) const;
    /// Extended by `margin` on each side.
    PixelRect grown(int margin) const {
        return {x - margin, y - margin, width + 2 * margin, height + 2 * margin};
    }
    /// The smallest rectangle around both; neither may be empty.
    PixelRect united(const PixelRect& other) const;
    bool contains(const PixelRect& other) const { return intersected(other) == other; }
    bool operator==(const PixelRect&) const = default;
};

/// A pixmap on the server, with a Render picture for it.
struct Canvas {
    PixelSize size;
    ServerPixmap pixmap;
    ServerPicture picture;
};

/// What the X server can draw, queried once. Main thread only.
class RenderServer {
  public:
    static RenderServer& shared();

    /// Whether Render, Composite, Damage and XFixes are available, so that the server itself can
    /// blur.
    bool canBlur() const { return canBlur_; }
    bool hasShape() const { return hasShape_; }
    std::uint8_t damageEvent() const { return damageEvent_; }
    xcb_render_pictformat_t rootFormat() const { return rootFormat_; }
    xcb_render_pictformat_t argbFormat() const { return argbFormat_; }
    /// `nullopt` for a visual that Render cannot draw.
    std::optional<xcb_render_pictformat_t> formatOf(xcb_visualid_t visual) const;
    bool hasAlpha(xcb_render_pictformat_t format) const { return format == argbFormat_; }

    /// Its pixels are undefined.
    Canvas makeCanvas(PixelSize size, bool alpha);
    /// Keeps a canvas without alpha for a later `makeCanvas` of the same size, instead of freeing
    /// it. Altogether no more than the screen's number of pixels is kept.
    void keep(Canvas canvas);
    /// A picture for a window or pixmap. With `inferiors` it reads what the screen shows there,
    /// child windows included.
    ServerPicture makePicture(xcb_drawable_t drawable, xcb_render_pictformat_t format,
                              bool inferiors) const;
    ServerPicture makeSolid(const OrvelCore::Color& color) const;
    /// The grain tile, premultiplied with its opacity, repeated endlessly.
    xcb_render_picture_t grain();

    /// Draws `source` into `area` of `target`, starting at `sourceX`, `sourceY` and scaled by
    /// `scaleX` and `scaleY` source pixels per drawn pixel.
    void drawScaled(std::uint8_t operation, xcb_render_picture_t source,
                    xcb_render_picture_t target, double scaleX, double scaleY, double sourceX,
                    double sourceY, const PixelRect& area) const;
    /// Calls `draw`, whose drawing on `canvas` changes only these areas.
    void drawWithin(const std::vector<PixelRect>& areas, const Canvas& canvas,
                    const std::function<void()>& draw) const;
    void fill(std::uint8_t operation, xcb_render_picture_t target, const OrvelCore::Color& color,
              const PixelRect& area) const;

  private:
    RenderServer();

    bool canBlur_ = false;
    bool hasShape_ = false;
    std::uint8_t damageEvent_ = 0;
    xcb_render_pictformat_t rootFormat_ = 0;
    xcb_render_pictformat_t argbFormat_ = 0;
    const xcb_render_query_pict_formats_reply_t* formats_ = nullptr;
    Canvas grain_;
    std::vector<Canvas> kept_;  // the oldest first
};

}  // namespace OrvelBlur
