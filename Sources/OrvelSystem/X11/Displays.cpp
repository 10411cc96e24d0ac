#include "OrvelSystem/X11/Displays.h"

#include <cstdlib>

#include <xcb/randr.h>

#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

namespace {

std::vector<OrvelCore::Rect> framesOf(const std::vector<Displays::Display>& displays) {
    std::vector<OrvelCore::Rect> frames;
    frames.reserve(displays.size());
    for (const auto& display : displays) frames.push_back(display.frame);
    return frames;
}

}  // namespace

Displays& Displays::shared() {
    static Displays displays;
    return displays;
}

Displays::Displays() : connection_(xcb_connect(nullptr, nullptr)) {
    const xcb_window_t root = X11::shared().root();
    const auto* const extension = xcb_get_extension_data(connection_, &xcb_randr_id);
    if (extension != nullptr && extension->present != 0)
        xcb_randr_select_input(connection_, root,
                               XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    // Monitors that the user defines by hand are reported only by a ConfigureNotify of the root
    // window.
    constexpr std::uint32_t configured = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, root, XCB_CW_EVENT_MASK, &configured);
    // This waits for a reply, so every change after the list has been read causes an event.
    hasMonitors_ = hasMonitors(connection_);
    xcb_flush(connection_);
    known_ = list();
    events_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_),
                                                QSocketNotifier::Read);
    QObject::connect(events_.get(), &QSocketNotifier::activated, [this] {
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) std::free(event);
        if (xcb_connection_has_error(connection_) != 0) events_->setEnabled(false);
        look();
    });
}

std::vector<Displays::Display> Displays::list() const {
    const auto& x11 = X11::shared();
    return readMonitors(x11.connection(), x11.root(), hasMonitors_);
}

std::vector<OrvelCore::Rect> Displays::frames() {
    return framesOf(shared().list());
}

std::vector<OrvelCore::Rect> Displays::known() {
    return framesOf(shared().known_);
}

void Displays::look() {
    auto now = list();
    if (now == known_) return;
    known_ = std::move(now);
    onChanged();
}

}  // namespace OrvelSystem
