#include "OrvelSystem/Wayland/Compositor.h"

#include <QGuiApplication>
#include <QWindow>
#include <algorithm>
#include <cstdint>
#include <string_view>

#include <ext-idle-notify-v1.h>
#include <ext-session-lock-v1.h>
#include <qpa/qplatformnativeinterface.h>

#include "OrvelSystem/Wayland/LayerShell.h"

namespace OrvelSystem {

namespace {

template <class T>
void bindOffer(T*& offer, wl_registry* registry, std::uint32_t name, const wl_interface& wanted,
               std::uint32_t version) {
    if (offer == nullptr)
        offer = static_cast<T*>(wl_registry_bind(registry, name, &wanted, version));
}

void offered(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
             std::uint32_t version) {
    auto& compositor = *static_cast<Compositor*>(data);
    const std::string_view offer(interface);
    if (offer == ext_session_lock_manager_v1_interface.name)
        bindOffer(compositor.sessionLock, registry, name, ext_session_lock_manager_v1_interface, 1);
    else if (offer == zwlr_layer_shell_v1_interface.name)
        bindOffer(compositor.layerShell, registry, name, zwlr_layer_shell_v1_interface,
                  std::min(version, 4U));
    else if (offer == ext_idle_notifier_v1_interface.name)
        bindOffer(compositor.idleNotifier, registry, name, ext_idle_notifier_v1_interface, 1);
}

constexpr wl_registry_listener registryListener{
    .global = offered, .global_remove = [](void*, wl_registry*, std::uint32_t) {}};

// `QNativeInterface::QWaylandApplication` is not used, because it returns null in a program that
// was built with an older version of Qt.
QPlatformNativeInterface* native() {
    return QGuiApplication::platformNativeInterface();
}

}  // namespace

Compositor::Compositor()
    : display_(static_cast<wl_display*>(native()->nativeResourceForIntegration("wl_display"))) {
    if (display_ == nullptr) return;
    waiting_ = wl_display_create_queue(display_);
    registry_ = wl_display_get_registry(display_);
    wl_registry_add_listener(registry_, &registryListener, this);
    wl_display_roundtrip(display_);
}

Compositor::~Compositor() {
    if (display_ == nullptr) return;
    if (sessionLock != nullptr) ext_session_lock_manager_v1_destroy(sessionLock);
    // The objects that it has created stay valid, so it needs no destructor request, which older
    // versions of the protocol lack.
    if (layerShell != nullptr) wl_proxy_destroy(reinterpret_cast<wl_proxy*>(layerShell));
    if (idleNotifier != nullptr) ext_idle_notifier_v1_destroy(idleNotifier);
    wl_registry_destroy(registry_);
    wl_event_queue_destroy(waiting_);
}

void Compositor::flush() const {
    wl_display_flush(display_);
}

void Compositor::waitForRequests() const {
    wl_display_roundtrip_queue(display_, waiting_);
}

wl_seat* Compositor::seat() {
    return static_cast<wl_seat*>(native()->nativeResourceForIntegration("wl_seat"));
}

wl_output* Compositor::output(QScreen& screen) {
    return static_cast<wl_output*>(native()->nativeResourceForScreen("output", &screen));
}

wl_surface* Compositor::showWithoutRole(QWidget& widget) {
    // Qt may commit while it shows a window, and draws when the window is exposed. A buffer before
    // the first configure event of the role is a fatal error.
    widget.setUpdatesEnabled(false);
    widget.show();
    QWindow* const window = widget.windowHandle();
    if (native()->nativeResourceForWindow("xdg_surface", window) != nullptr) return nullptr;
    return static_cast<wl_surface*>(native()->nativeResourceForWindow("surface", window));
}

}  // namespace OrvelSystem
