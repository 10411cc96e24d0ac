#include "OrvelSystem/Linux/X11Hotkeys.h"

#include <algorithm>
#include <ranges>
#include <vector>

namespace OrvelSystem {

using OrvelCore::Shortcut;

namespace {

Shortcut::Modifiers fromCarbon(std::uint32_t mask) {
    Shortcut::Modifiers modifiers;
    if (mask & CarbonModifiers::command) modifiers |= Shortcut::Modifiers::command;
    if (mask & CarbonModifiers::option) modifiers |= Shortcut::Modifiers::option;
    if (mask & CarbonModifiers::control) modifiers |= Shortcut::Modifiers::control;
    if (mask & CarbonModifiers::shift) modifiers |= Shortcut::Modifiers::shift;
    return modifiers;
}

/// Every subset of `bits`, the empty one included.
std::vector<std::uint8_t> subsets(std::uint8_t bits) {
    std::vector<std::uint8_t> all;
    unsigned subset = bits;
    for (;;) {
        all.push_back(static_cast<std::uint8_t>(subset));
        if (subset == 0) return all;
        subset = (subset - 1) & bits;
    }
}

/// While a key is held the server sends a release with each press. Both are made at once, but the
/// server reads its clock, in milliseconds, for each; no finger is as fast.
constexpr xcb_timestamp_t repeatGap = 5;

}  // namespace

X11Hotkeys::X11Hotkeys(X11& x11)
    : x11_(x11),
      map_(X11KeyMap::read(x11)),
      events_(x11.onEvent([this](const auto& event) { handle(event); })) {}

X11Hotkeys::~X11Hotkeys() {
    for (Registration& registration : registrations_ | std::views::values) release(registration);
    x11_.flush();
}

void X11Hotkeys::installEventHandler(std::function<void(std::uint32_t)> pressed) {
    pressed_ = std::move(pressed);
}

std::optional<HotkeyRef> X11Hotkeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                    std::uint32_t number) {
    Registration registration{keyCode, fromCarbon(modifiers), number, {}};
    take(registration);
    if (!registration.grab) return {};
    registrations_.emplace(nextRef_, registration);
    return nextRef_++;
}

void X11Hotkeys::unregisterHotKey(HotkeyRef ref) {
    const auto found = registrations_.find(ref);
    if (found == registrations_.end()) return;
    release(found->second);
    registrations_.erase(found);
    x11_.flush();
}

void X11Hotkeys::handle(const xcb_generic_event_t& event) {
    // Exactly these types: an event that another program has sent carries one more bit.
    if (event.response_type == XCB_KEY_RELEASE) {
        const auto& key = reinterpret_cast<const xcb_key_release_event_t&>(event);
        releasedKey_ = key.detail;
        releasedAt_ = key.time;
    } else if (event.response_type == XCB_KEY_PRESS) {
        keyPressed(reinterpret_cast<const xcb_key_press_event_t&>(event));
    } else if (X11KeyMap::isChange(x11_, event)) {
        followKeyMap();
    }
}

void X11Hotkeys::keyPressed(const xcb_key_press_event_t& event) {
    // Our grabs report to the root; any other window gets what was typed into it.
    if (event.event != x11_.root()) return;
    if (event.detail == releasedKey_ && event.time - releasedAt_ <= repeatGap) return;
    // The upper half of the state is mouse buttons and the keyboard layout.
    const auto modifierBits = static_cast<std::uint8_t>(event.state & 0xFF & ~map_.lockBits());
    const Grab grab{event.detail, modifierBits};
    const auto registration = std::ranges::find(registrations_ | std::views::values,
                                                std::optional(grab), &Registration::grab);
    if (registration.base() == registrations_.end() || !pressed_) return;
    const auto number = (*registration).number;
    // A key of ours, still down, keeps the keyboard until it is released, unless what is called
    // here takes the keyboard for longer. So nothing of ours gives the keyboard back.
    const auto pressed = pressed_;
    pressed(number);
}

void X11Hotkeys::followKeyMap() {
    X11KeyMap now = X11KeyMap::read(x11_);
    // One change comes as several events, and a second keyboard with the same map as another.
    if (now.hasSameKeys(map_)) return;
    for (Registration& registration : registrations_ | std::views::values) release(registration);
    map_ = std::move(now);
    for (Registration& registration : registrations_ | std::views::values) take(registration);
    x11_.flush();
}

void X11Hotkeys::take(Registration& registration) {
    const auto keycode = map_.keyCodes().xKeycode(registration.keyCode);
    const auto modifierBits = map_.bits(registration.modifiers);
    if (!keycode || !modifierBits) return;
    const Grab grab{*keycode, *modifierBits};
    // The server lets a program take the same grab twice, but has only one to give back.
    for (const Registration& other : registrations_ | std::views::values) {
        if (other.grab == grab) return;
    }

    xcb_connection_t* const connection = x11_.connection();
    std::vector<xcb_void_cookie_t> cookies;
    for (const std::uint8_t locks : subsets(map_.lockBits())) {
        cookies.push_back(xcb_grab_key_checked(
            connection, 0, x11_.root(), static_cast<std::uint16_t>(grab.modifierBits | locks),
            grab.keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    registration.grab = grab;
    bool refused = false;
    // Only the first check waits for the server: it answers for all that was sent before.
    for (const xcb_void_cookie_t cookie : cookies) {
        const XReply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
        refused = refused || error;
    }
    if (!refused) return;
    release(registration);
    x11_.flush();
}

void X11Hotkeys::release(Registration& registration) {
    if (!registration.grab) return;
    for (const std::uint8_t locks : subsets(map_.lockBits())) {
        xcb_ungrab_key(x11_.connection(), registration.grab->keycode, x11_.root(),
                       static_cast<std::uint16_t>(registration.grab->modifierBits | locks));
    }
    registration.grab.reset();
}

}  // namespace OrvelSystem
