#include "OrvelBlur/X11/CompositeOverlay.h"

#include <utility>

#include "OrvelBlur/X11/PanelStack.h"

namespace OrvelBlur {

using OrvelSystem::X11;

CompositeOverlay& CompositeOverlay::shared() {
    // Never destroyed: what it holds goes with the connection, which closes before statics are
    // destroyed.
    static auto& overlay = *new CompositeOverlay;
    return overlay;
}

CompositeOverlay::CompositeOverlay()
    : window_(X11::shared().connection(), X11::shared().screenNumber()) {}

bool CompositeOverlay::hold(std::uint32_t color) {
    if (picture_) return true;
    auto& server = RenderServer::shared();
    if (!server.canBlur() || !window_.hold(color)) return false;
    color_ = color;
    picture_ = server.makePicture(window_.window(), server.rootFormat(), false);
    events_ = X11::shared().onEvent([this](const auto& event) { handle(event); });
    // Windows that were above the panels are still visible until the panels are drawn here.
    drawAll();
    X11::shared().flush();
    return true;
}

void CompositeOverlay::release() {
    if (!picture_) return;
    events_.reset();
    picture_.reset();
    window_.hide();
    window_.release();
}

void CompositeOverlay::handle(const xcb_generic_event_t& event) {
    switch (OrvelSystem::repairWindow(X11::shared().connection(), *X11::shared().screen(),
                                      window_.window(), window_.wantedState(event), event)) {
        case OrvelSystem::WindowChange::none:
            return;
        case OrvelSystem::WindowChange::repaired:
            drawAll();
            X11::shared().flush();
            return;
        case OrvelSystem::WindowChange::destroyed:
            // The server gives each overlay window the same number, so the event may be about one
            // that this program released earlier.
            if (window_.isThere()) return;
            picture_.reset();
            window_.release();
            hold(color_);
            return;
    }
}

OrvelCore::Subscription CompositeOverlay::subscribe(Panel panel) {
    return panels_.add(std::move(panel));
}

xcb_render_picture_t CompositeOverlay::pictureFor(xcb_window_t window) const {
    PixelRect frame;
    panels_.forEach([&](const Panel& panel) {
        if (panel.window == window) frame = panel.frame();
    });
    const auto hides = [&](const Panel& other) {
        return PanelStack::shared().isAbove(other.window, window) &&
               !other.frame().intersected(frame).isEmpty();
    };
    return panels_.any(hides) ? XCB_NONE : picture_.id();
}

void CompositeOverlay::leave(const PixelRect& area) {
    if (!picture_) return;
    xcb_clear_area(X11::shared().connection(), 0, window_.window(),
                   static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                   static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height));
    // Another panel may be in this area as well.
    drawAll();
}

void CompositeOverlay::drawAll() {
    panels_.forEach([](const Panel& panel) { panel.draw(); });
}

}  // namespace OrvelBlur
