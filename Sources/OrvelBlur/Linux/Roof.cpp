#include "OrvelBlur/Linux/Roof.h"

#include <utility>

#include "OrvelSystem/Linux/X11.h"

namespace OrvelBlur {

using OrvelSystem::X11;

Roof& Roof::shared() {
    // Never destroyed: what it holds goes with the connection, which ends before statics do.
    static auto& roof = *new Roof;
    return roof;
}

Roof::Roof() : window_(X11::shared().connection(), X11::shared().screenNumber()) {}

bool Roof::hold(std::uint32_t color) {
    if (picture_) return true;
    auto& server = RenderServer::shared();
    if (!server.canBlur() || !window_.hold(color)) return false;
    picture_ = server.makePicture(window_.window(), server.rootFormat(), false);
    // What stood above the panels at this moment is still seen.
    drawAll();
    X11::shared().flush();
    return true;
}

void Roof::release() {
    if (!picture_) return;
    picture_.reset();
    window_.hide();
    window_.release();
}

Roof::Subscription Roof::subscribe(std::function<void()> draw) {
    auto owned = std::make_shared<std::function<void()>>(std::move(draw));
    panels_.remove_if([](const auto& weak) { return weak.expired(); });
    panels_.push_back(owned);
    return owned;
}

void Roof::leave(const PixelRect& area) {
    if (!picture_) return;
    xcb_clear_area(X11::shared().connection(), 0, window_.window(),
                   static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                   static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height));
    // Another may have stood there as well.
    drawAll();
}

void Roof::drawAll() {
    for (const auto& weak : panels_) {
        if (const auto draw = weak.lock()) (*draw)();
    }
}

}  // namespace OrvelBlur
