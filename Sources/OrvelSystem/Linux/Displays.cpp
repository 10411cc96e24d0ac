#include "OrvelSystem/Linux/Displays.h"

#include <xcb/randr.h>

namespace OrvelSystem {

namespace {

constexpr int closeWatchMilliseconds = 500;

}  // namespace

Displays& Displays::shared() {
    static Displays displays;
    return displays;
}

Displays::Displays() {
    const auto& x11 = X11::shared();
    auto* const connection = x11.connection();
    const auto* const extension = xcb_get_extension_data(connection, &xcb_randr_id);
    if (extension == nullptr || extension->present == 0) return;
    hasMonitors_ = hasMonitors(connection);
    xcb_randr_select_input(connection, x11.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    X11::shared().selectOnRoot(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    x11.flush();
    known_ = list();
    const std::uint8_t first = extension->first_event;
    events_ = X11::shared().onEvent([this, first](const xcb_generic_event_t& event) {
        const int type = event.response_type & 0x7F;
        // Monitors defined by hand tell only by a root window that is configured.
        const bool resized = type == XCB_CONFIGURE_NOTIFY &&
                             reinterpret_cast<const xcb_configure_notify_event_t&>(event).window ==
                                 X11::shared().root();
        if (resized || type == first + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
            type == first + XCB_RANDR_NOTIFY)
            look();
    });
    QObject::connect(&poll_, &QTimer::timeout, [this] { look(); });
}

std::vector<Displays::Display> Displays::list() const {
    const auto& x11 = X11::shared();
    return readMonitors(x11.connection(), x11.root(), hasMonitors_);
}

std::shared_ptr<void> Displays::watchClosely() {
    if (auto watching = close_.lock()) return watching;
    poll_.start(closeWatchMilliseconds);
    // The token's only use is its end.
    std::shared_ptr<void> token(this,
                                [](void* self) { static_cast<Displays*>(self)->poll_.stop(); });
    close_ = token;
    return token;
}

void Displays::look() {
    auto now = list();
    if (now == known_) return;
    known_ = std::move(now);
    onChanged();
}

}  // namespace OrvelSystem
