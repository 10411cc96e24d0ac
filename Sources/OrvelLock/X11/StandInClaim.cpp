#include "OrvelLock/X11/StandInClaim.h"

#include <chrono>
#include <thread>
#include <utility>

#include <xcb/xfixes.h>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/X11/PanelStack.h"
#include "OrvelSystem/GuardService.h"

namespace OrvelLock {

using OrvelBlur::PanelStack;
using OrvelSystem::StandIn;
using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

// Below the backstop.
constexpr int level = OrvelBlur::WindowLevel::lock - 2;

xcb_connection_t* connection() {
    return X11::shared().connection();
}

}  // namespace

StandInClaim::StandInClaim(std::function<void()> onOffered) : onOffered_(std::move(onOffered)) {}

bool StandInClaim::take() {
    if (window_ != XCB_NONE) return false;
    watch();
    const XReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection(), xcb_get_selection_owner(connection(), X11::shared().atom(StandIn::selection)),
        nullptr));
    if (!owner || owner->owner == XCB_NONE) return false;
    window_ = owner->owner;
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection(), window_, XCB_CW_EVENT_MASK, &mask);
    PanelStack::shared().add(window_, level);
    PanelStack::shared().orderFront(window_);
    xcb_change_save_set(connection(), XCB_SET_MODE_INSERT, window_);
    // A previous app process may have left another value.
    tellKeys();
    X11::shared().flush();
    isDown_ = false;
    return true;
}

void StandInClaim::takeDown() {
    if (window_ == XCB_NONE || std::exchange(isDown_, true)) return;
    xcb_unmap_window(connection(), window_);
    X11::shared().flush();
}

/// A guard may also start during the lock.
void StandInClaim::watch() {
    if (events_) return;
    auto& x11 = X11::shared();
    const auto* const fixes = xcb_get_extension_data(connection(), &xcb_xfixes_id);
    if (fixes && fixes->present) {
        xcb_xfixes_select_selection_input(connection(), x11.root(), x11.atom(StandIn::selection),
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    }
    events_ = x11.onEvent([this](const auto& event) { handle(event); });
}

void StandInClaim::handle(const xcb_generic_event_t& event) {
    const auto type = event.response_type;
    if (type == XCB_DESTROY_NOTIFY) {
        const auto& destroy = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
        if (window_ != XCB_NONE && destroy.event == window_) lose();
        return;
    }
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (property.window == window_ && property.atom == X11::shared().atom(StandIn::takesKeys))
            tellKeysAgain();
        return;
    }
    const auto* const fixes = xcb_get_extension_data(connection(), &xcb_xfixes_id);
    if (!fixes || type != fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY) return;
    const auto& notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (notify.selection != X11::shared().atom(StandIn::selection) || notify.owner == window_)
        return;
    // The guard offers its window again if another client takes the selection.
    release();
    onOffered_();
}

void StandInClaim::fit(std::uint32_t width, std::uint32_t height) {
    if (window_ == XCB_NONE) return;
    const std::uint32_t size[2] = {width, height};
    xcb_configure_window(connection(), window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size);
}

void StandInClaim::setKeys(std::uint32_t keys) {
    if (keys == keys_) return;
    keys_ = keys;
    if (window_ == XCB_NONE) return;
    tellKeys();
    X11::shared().flush();
}

bool StandInClaim::hasNet() const {
    return window_ != XCB_NONE && !X11::shared().property32(window_, StandIn::hasNet, 1).empty();
}

void StandInClaim::tellKeys() const {
    const auto property = X11::shared().atom(StandIn::takesKeys);
    if (keys_ == StandIn::free)
        xcb_delete_property(connection(), window_, property);
    else
        xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window_, property,
                            XCB_ATOM_CARDINAL, 32, 1, &keys_);
}

/// Undoes what another client has written.
void StandInClaim::tellKeysAgain() const {
    const auto values = X11::shared().property32(window_, StandIn::takesKeys, 1);
    if ((values.empty() ? StandIn::free : values.front()) == keys_) return;
    tellKeys();
    X11::shared().flush();
}

void StandInClaim::giveBack() {
    events_.reset();
    setKeys(StandIn::free);
    takeDown();
    release();
}

void StandInClaim::release() {
    if (window_ == XCB_NONE) return;
    xcb_change_save_set(connection(), XCB_SET_MODE_DELETE, window_);
    PanelStack::shared().remove(window_);
    X11::shared().flush();
    window_ = XCB_NONE;
}

/// The guard is gone, so nothing would lock the screen if this program died too. Starts it again.
void StandInClaim::lose() {
    PanelStack::shared().remove(window_);
    window_ = XCB_NONE;
    std::thread([] {
        // The window goes before the process, which then still counts as a guard.
        for (const int seconds : {0, 1, 3}) {
            std::this_thread::sleep_for(std::chrono::seconds(seconds));
            OrvelSystem::GuardService::kickstart();
        }
    }).detach();
}

}  // namespace OrvelLock
