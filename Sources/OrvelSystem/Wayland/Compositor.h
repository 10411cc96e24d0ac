#pragma once

#include <QScreen>
#include <QWidget>

#include <wayland-client.h>

struct ext_idle_notifier_v1;
struct ext_session_lock_manager_v1;
struct zwlr_layer_shell_v1;

namespace OrvelSystem {

/// The compositor of the session, on Qt's own connection: only that one's surfaces can show Qt's
/// windows. Main thread only; needs a `QGuiApplication` on its Wayland platform, which it must not
/// outlive.
class Compositor {
  public:
    /// What it offers; null for what it does not.
    ext_session_lock_manager_v1* sessionLock = nullptr;
    zwlr_layer_shell_v1* layerShell = nullptr;
    ext_idle_notifier_v1* idleNotifier = nullptr;

    /// Waits for the compositor once.
    Compositor();
    ~Compositor();
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;

    /// Sends what was requested.
    void flush() const;
    /// Waits until the compositor has done all that was requested. No event is handled meanwhile.
    void waitForRequests() const;

    /// Null where there is none.
    static wl_seat* seat();
    /// Null for a screen that Qt has made up.
    static wl_output* output(QScreen& screen);
    /// Shows the widget, a window with `rolelessWindow` among its flags, with a surface that has
    /// neither a role nor a buffer. It does not draw before `setUpdatesEnabled(true)`. Null where
    /// Qt has given it a role.
    static wl_surface* showWithoutRole(QWidget& widget);
    /// Give a window no role where `rolelessVariable` is set.
    static constexpr Qt::WindowFlags rolelessWindow =
        Qt::FramelessWindowHint | Qt::BypassWindowManagerHint;

  private:
    wl_display* display_;
    wl_registry* registry_ = nullptr;
    wl_event_queue* waiting_ = nullptr;
};

}  // namespace OrvelSystem
