#include "OrvelBlur/X11/PanelFocus.h"

#include <cstring>
#include <utility>

#include "OrvelSystem/X11/X11.h"
#include "OrvelSystem/X11/XReply.h"

namespace OrvelBlur {

using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

// A window manager gives the focus of a lost window to another one, some time after the loss.
constexpr int retakeMilliseconds = 1000;
// More than a person types while a content is made.
constexpr std::size_t earlyKeyLimit = 256;

}  // namespace

PanelFocus::PanelFocus(const PanelWindow& window, std::function<void()> changed)
    : window_(window), changed_(std::move(changed)) {
    retake_.setSingleShot(true);
    QObject::connect(&retake_, &QTimer::timeout, [this] { set(hasFocus()); });
}

void PanelFocus::take(ContentHost* content) {
    request(content);
    set(true);
}

void PanelFocus::contentChanged(ContentHost* content) {
    if (content != nullptr) passOnKeys(*content);
    if (isKey_) request(content);
}

void PanelFocus::retake(ContentHost* content) {
    if (!isKey_) return;
    retake_.start(retakeMilliseconds);
    request(content);
}

void PanelFocus::drop() {
    retake_.stop();
    isKey_ = false;
    forgetKeys();
}

void PanelFocus::restore(bool wasKey, ContentHost* content) {
    isKey_ = wasKey;
    retake(content);
}

void PanelFocus::request(ContentHost* content) {
    if (content != nullptr) {
        content->focus();
    } else {
        // With the server's current time: a request with the time of the last event received here
        // would be ignored if another client has taken the focus since.
        const auto cookie = xcb_set_input_focus(X11::shared().connection(), XCB_INPUT_FOCUS_PARENT,
                                                window_.id(), XCB_CURRENT_TIME);
        request_ = cookie.sequence;
    }
    X11::shared().flush();
}

bool PanelFocus::hasFocus() const {
    auto* const connection = X11::shared().connection();
    const XReply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    xcb_window_t window = focus ? focus->focus : xcb_window_t(XCB_NONE);
    // The content is a child window.
    while (window > XCB_INPUT_FOCUS_POINTER_ROOT && window != window_.id()) {
        const XReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
        window = tree ? tree->parent : xcb_window_t(XCB_NONE);
    }
    return window == window_.id();
}

void PanelFocus::handle(const xcb_generic_event_t& event, ContentHost* content) {
    switch (event.response_type) {
        case 0: {
            const auto& error = reinterpret_cast<const xcb_generic_error_t&>(event);
            if (request_ != 0 && error.sequence == static_cast<std::uint16_t>(request_) &&
                error.major_code == XCB_SET_INPUT_FOCUS)
                set(false);
            break;
        }
        case XCB_KEY_PRESS:
            keepKey(reinterpret_cast<const xcb_key_press_event_t&>(event));
            if (content != nullptr) passOnKeys(*content);
            break;
        case XCB_FOCUS_IN:
            handleFocus(reinterpret_cast<const xcb_focus_in_event_t&>(event), true, content);
            break;
        case XCB_FOCUS_OUT:
            handleFocus(reinterpret_cast<const xcb_focus_in_event_t&>(event), false, content);
            break;
        default:
            break;
    }
}

void PanelFocus::handleFocus(const xcb_focus_in_event_t& event, bool in, ContentHost* content) {
    const bool isWindow = event.event == window_.id();
    if (!isWindow && (content == nullptr || event.event != content->window())) return;
    // A grab redirects keys temporarily without moving the focus, and focus that follows the
    // pointer does not count.
    if (event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB) return;
    if (event.detail == XCB_NOTIFY_DETAIL_POINTER || event.detail == XCB_NOTIFY_DETAIL_POINTER_ROOT)
        return;
    // The focus moved within the panel.
    if (event.detail == XCB_NOTIFY_DETAIL_INFERIOR) return;
    if (!in && !isWindow && event.detail == XCB_NOTIFY_DETAIL_ANCESTOR) return;
    if (!retake_.isActive()) {
        set(in);
    } else if (!in) {
        request(content);
    }
}

void PanelFocus::keepKey(const xcb_key_press_event_t& press) {
    if (press.event != window_.id() || early_.size() == earlyKeyLimit) return;
    // Once, so that no copy remains elsewhere in memory.
    early_.reserve(earlyKeyLimit);
    early_.push_back(press);
}

void PanelFocus::passOnKeys(const ContentHost& content) {
    if (early_.empty()) return;
    for (auto key : early_) {
        key.event = content.window();
        key.child = XCB_NONE;
        xcb_send_event(X11::shared().connection(), 0, key.event, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char*>(&key));
    }
    forgetKeys();
    X11::shared().flush();
}

/// They may be a part of the password.
void PanelFocus::forgetKeys() {
    if (early_.empty()) return;
    explicit_bzero(early_.data(), early_.size() * sizeof early_.front());
    early_.clear();
}

void PanelFocus::set(bool isKey) {
    retake_.stop();
    if (isKey == isKey_) return;
    isKey_ = isKey;
    // The call may destroy this object, and with it the function.
    const auto changed = changed_;
    changed();
}

}  // namespace OrvelBlur
