#include "OrvelBlur/Wayland/LayerSurface.h"

#include <utility>

#include "OrvelSystem/Wayland/Compositor.h"
#include "OrvelSystem/Wayland/LayerShell.h"

namespace OrvelBlur {

using OrvelSystem::Compositor;

namespace {

constexpr std::uint32_t topLeft =
    ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT;
constexpr std::uint32_t everySide =
    topLeft | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;

}  // namespace

LayerSurface::LayerSurface(const Compositor& compositor, QWidget& window, QScreen& screen,
                           const Place& place, std::function<void(const QSize&)> resized)
    : window_(window), resized_(std::move(resized)) {
    auto* const output = Compositor::output(screen);
    if (output == nullptr || compositor.layerShell == nullptr) return;
    window_.setScreen(&screen);
    auto* const surface = Compositor::showWithoutRole(window_);
    if (surface == nullptr) return;
    role_ = zwlr_layer_shell_v1_get_layer_surface(compositor.layerShell, surface, output,
                                                  ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "karvo");
    static constexpr zwlr_layer_surface_v1_listener listener{
        .configure =
            [](void* data, zwlr_layer_surface_v1*, std::uint32_t serial, std::uint32_t width,
               std::uint32_t height) {
                static_cast<LayerSurface*>(data)->configured(
                    serial, QSize(static_cast<int>(width), static_cast<int>(height)));
            },
        .closed =
            [](void* data, zwlr_layer_surface_v1*) {
                // The handler may destroy this surface, and with it this closure.
                const auto closed = static_cast<LayerSurface*>(data)->onClosed;
                closed();
            }};
    zwlr_layer_surface_v1_add_listener(role_, &listener, this);
    zwlr_layer_surface_v1_set_anchor(role_, place.size.isEmpty() ? everySide : topLeft);
    if (!place.size.isEmpty()) {
        zwlr_layer_surface_v1_set_size(role_, static_cast<std::uint32_t>(place.size.width()),
                                       static_cast<std::uint32_t>(place.size.height()));
        zwlr_layer_surface_v1_set_margin(role_, place.position.y(), 0, 0, place.position.x());
    }
    // Cover bars as well.
    zwlr_layer_surface_v1_set_exclusive_zone(role_, -1);
    zwlr_layer_surface_v1_set_keyboard_interactivity(
        role_, place.takesKeyboard ? ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE
                                   : ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
    wl_surface_commit(surface);
}

// Destroys the role first: hiding the window while its surface has the role can be a fatal error.
LayerSurface::~LayerSurface() {
    window_.setUpdatesEnabled(false);
    if (role_ != nullptr) zwlr_layer_surface_v1_destroy(role_);
    window_.hide();
}

void LayerSurface::configured(std::uint32_t serial, const QSize& size) {
    zwlr_layer_surface_v1_ack_configure(role_, serial);
    if (resized_) return resized_(size);
    window_.resize(size);
    window_.setUpdatesEnabled(true);
    window_.repaint();
}

}  // namespace OrvelBlur
