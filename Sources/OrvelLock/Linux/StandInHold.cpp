#include "OrvelLock/Linux/StandInHold.h"

#include <thread>

#include "OrvelBlur/Linux/PanelStack.h"
#include "OrvelBlur/OverlayPanel.h"
#include "OrvelSystem/GuardService.h"
#include "OrvelSystem/Linux/StandIn.h"

namespace OrvelLock {

using OrvelBlur::PanelStack;
using OrvelSystem::StandIn;
using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

// Under the shield.
constexpr int level = OrvelBlur::WindowLevel::lock - 2;

xcb_connection_t* connection() {
    return X11::shared().connection();
}

}  // namespace

bool StandInHold::take() {
    if (window_ != XCB_NONE) return false;
    auto& x11 = X11::shared();
    const XReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection(), xcb_get_selection_owner(connection(), x11.atom(StandIn::selection)),
        nullptr));
    if (!owner || owner->owner == XCB_NONE) return false;
    window_ = owner->owner;
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection(), window_, XCB_CW_EVENT_MASK, &mask);
    PanelStack::shared().add(window_, level);
    PanelStack::shared().orderFront(window_);
    xcb_change_save_set(connection(), XCB_SET_MODE_INSERT, window_);
    // As an app before this one has left it.
    xcb_delete_property(connection(), window_, x11.atom(StandIn::takesKeys));
    xcb_unmap_window(connection(), window_);
    x11.flush();
    events_ = x11.onEvent([this](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7F) != XCB_DESTROY_NOTIFY) return;
        const auto& destroy = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
        if (destroy.event == window_) lose();
    });
    return true;
}

void StandInHold::fit(std::uint32_t width, std::uint32_t height) {
    if (window_ == XCB_NONE) return;
    const std::uint32_t size[2] = {width, height};
    xcb_configure_window(connection(), window_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size);
}

void StandInHold::setTakesKeys(bool takes) {
    if (window_ == XCB_NONE || takes == takesKeys_) return;
    takesKeys_ = takes;
    const auto property = X11::shared().atom(StandIn::takesKeys);
    const std::uint32_t yes = 1;
    if (takes)
        xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window_, property,
                            XCB_ATOM_CARDINAL, 32, 1, &yes);
    else
        xcb_delete_property(connection(), window_, property);
    X11::shared().flush();
}

void StandInHold::giveBack() {
    if (window_ == XCB_NONE) return;
    setTakesKeys(false);
    xcb_change_save_set(connection(), XCB_SET_MODE_DELETE, window_);
    PanelStack::shared().remove(window_);
    X11::shared().flush();
    events_.reset();
    window_ = XCB_NONE;
}

/// The guard is gone, and with it the lock that would be asked for if this program went too.
void StandInHold::lose() {
    PanelStack::shared().remove(window_);
    window_ = XCB_NONE;
    takesKeys_ = false;
    events_.reset();
    std::thread([] { OrvelSystem::GuardService::kickstart(); }).detach();
}

}  // namespace OrvelLock
