#pragma once

#include <QScreen>
#include <QWidget>

#include <wayland-client.h>

struct ext_idle_notifier_v1;
struct ext_session_lock_manager_v1;
struct zwlr_layer_shell_v1;

namespace OrvelSystem {

/// The compositor of the session. It uses Qt's connection, because Qt's windows are surfaces of
/// that connection. Main thread only. Needs a `QGuiApplication` on the Wayland platform, and must
/// not outlive it.
class Compositor {
  public:
    /// The globals of the compositor; null if it does not offer one.
    ext_session_lock_manager_v1* sessionLock = nullptr;
    zwlr_layer_shell_v1* layerShell = nullptr;
    ext_idle_notifier_v1* idleNotifier = nullptr;

    /// Waits for one round trip to the compositor.
    Compositor();
    ~Compositor();
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;

    /// Sends all pending requests.
    void flush() const;
    /// Waits until the compositor has processed all requests. Handles no events meanwhile.
    void waitForRequests() const;

    /// Null if there is none.
    static wl_seat* seat();
    /// Null for the placeholder screen that Qt has when there is no output.
    static wl_output* output(QScreen& screen);
    /// Shows the widget, a window with the flag `rolelessWindow`, and returns its surface, which
    /// has neither a role nor a buffer. The widget does not draw before `setUpdatesEnabled(true)`.
    /// Null if Qt has given the surface a role.
    static wl_surface* showWithoutRole(QWidget& widget);
    /// Makes Qt give a window no role if `rolelessVariable` is set.
    static constexpr Qt::WindowFlags rolelessWindow =
        Qt::FramelessWindowHint | Qt::BypassWindowManagerHint;

  private:
    wl_display* display_;
    wl_registry* registry_ = nullptr;
    wl_event_queue* waiting_ = nullptr;
};

}  // namespace OrvelSystem
