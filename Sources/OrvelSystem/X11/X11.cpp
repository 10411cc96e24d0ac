#include "OrvelSystem/X11/X11.h"

#include <QGuiApplication>

namespace OrvelSystem {

namespace {

// This bit of the type marks an event that a client has sent.
constexpr unsigned sentBit = 0x80;

}  // namespace

X11& X11::shared() {
    static X11 x11;
    return x11;
}

X11::X11() {
    const auto* const native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    connection_ = native->connection();
    // Qt opens the default screen of the display; a server with RandR has no other.
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    qGuiApp->installNativeEventFilter(this);
}

X11::~X11() = default;

xcb_atom_t X11::atom(std::string_view name) {
    const auto known = atoms_.find(name);
    if (known != atoms_.end()) return known->second;
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    const xcb_atom_t atom = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    atoms_.emplace(name, atom);
    return atom;
}

OrvelCore::Subscription X11::onEvent(Handler handler) {
    auto owned = std::make_shared<Handler>(std::move(handler));
    handlers_.push_back(owned);
    return owned;
}

void X11::selectOnRoot(std::uint32_t eventMask) {
    if ((rootMask_ & eventMask) == eventMask) return;
    const XReply<xcb_get_window_attributes_reply_t> now(xcb_get_window_attributes_reply(
        connection_, xcb_get_window_attributes(connection_, root()), nullptr));
    rootMask_ |= (now ? now->your_event_mask : 0) | eventMask;
    xcb_change_window_attributes(connection_, root(), XCB_CW_EVENT_MASK, &rootMask_);
}

std::vector<std::uint32_t> X11::property32(xcb_window_t window, std::string_view name,
                                           std::uint32_t maxItems) {
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_,
        xcb_get_property(connection_, 0, window, atom(name), XCB_ATOM_ANY, 0, maxItems), nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* const values =
        static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

bool X11::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/) {
    if (type != "xcb_generic_event_t") return false;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if ((event.response_type & sentBit) != 0) return isForged(event);
    for (auto at = handlers_.begin(); at != handlers_.end();) {
        // A handler may destroy its own subscription or add others.
        const auto handler = at->lock();
        if (handler) (*handler)(event);
        at = handler ? std::next(at) : handlers_.erase(at);
    }
    // Errors come from windows that were destroyed between two requests. Qt would only print them.
    return event.response_type == 0 || isOfOtherWindow(event) || isKeptFromQt(event);
}

/// Whether a client has sent an event that only the server generates. Window managers do send
/// ConfigureNotify, and Qt needs it and every client message. Sent key events are those that a lock
/// translates for its card.
bool X11::isForged(const xcb_generic_event_t& event) const {
    switch (event.response_type & ~sentBit) {
        case XCB_FOCUS_IN:
        case XCB_FOCUS_OUT:
        case XCB_EXPOSE:
        case XCB_VISIBILITY_NOTIFY:
        case XCB_DESTROY_NOTIFY:
        case XCB_UNMAP_NOTIFY:
        case XCB_MAP_NOTIFY:
        case XCB_REPARENT_NOTIFY:
        case XCB_PROPERTY_NOTIFY:
            return true;
        default:
            return false;
    }
}

bool X11::isKeptFromQt(const xcb_generic_event_t& event) const {
    switch (event.response_type) {
        case XCB_DESTROY_NOTIFY:
        case XCB_UNMAP_NOTIFY:
        case XCB_MAP_NOTIFY:
        case XCB_REPARENT_NOTIFY:
        case XCB_CONFIGURE_NOTIFY:
        case XCB_PROPERTY_NOTIFY:
            // All of these events store the window that receives the event at the same offset.
            return keptFromQt_.contains(
                reinterpret_cast<const xcb_property_notify_event_t&>(event).window);
        default:
            return false;
    }
}

// Qt takes each of these events for a change of the displays, and queries all of their data.
bool X11::isOfOtherWindow(const xcb_generic_event_t& event) const {
    if (event.response_type != XCB_CONFIGURE_NOTIFY) return false;
    const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
    return configure.event == root() && configure.window != root();
}

}  // namespace OrvelSystem
