#include "OrvelSystem/X11/X11Hotkeys.h"

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

/// Every subset of `bits`, including the empty one.
std::vector<std::uint8_t> subsets(std::uint8_t bits) {
    std::vector<std::uint8_t> all;
    unsigned subset = bits;
    for (;;) {
        all.push_back(static_cast<std::uint8_t>(subset));
        if (subset == 0) return all;
        subset = (subset - 1) & bits;
    }
}

/// In milliseconds. While a key is held, the server sends a release together with each repeated
/// press, and reads its clock separately for each. No user can press a key again so fast.
constexpr xcb_timestamp_t repeatGap = 5;

/// In milliseconds. Reading the key map takes about ten round trips, and the server reports a
/// change each time another keyboard is used, so a lock that takes the devices causes dozens.
constexpr int keyMapPause = 100;

}  // namespace

X11Hotkeys::X11Hotkeys(X11& x11)
    : x11_(x11),
      map_(X11KeyMap::read(x11)),
      devices_(x11.connection(), x11.root()),
      events_(x11.onEvent([this](const auto& event) { handle(event); })) {
    devices_.watchHierarchy();
    keyMapChanges_.setSingleShot(true);
    keyMapChanges_.setInterval(keyMapPause);
    QObject::connect(&keyMapChanges_, &QTimer::timeout, [this] { followKeyMap(); });
}

X11Hotkeys::~X11Hotkeys() {
    for (Registration& registration : registrations_ | std::views::values) release(registration);
    registrations_.clear();
    grabDevices();
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
    grabDevices();
    return nextRef_++;
}

void X11Hotkeys::unregisterHotKey(HotkeyRef ref) {
    const auto found = registrations_.find(ref);
    if (found == registrations_.end()) return;
    release(found->second);
    registrations_.erase(found);
    grabDevices();
}

void X11Hotkeys::setGrabsDevices(bool grabs) {
    grabsDevices_ = grabs;
    grabDevices();
}

void X11Hotkeys::handle(const xcb_generic_event_t& event) {
    // These types must match exactly: an event that another program has sent has one more bit set.
    if (event.response_type == XCB_KEY_RELEASE) {
        const auto& key = reinterpret_cast<const xcb_key_release_event_t&>(event);
        releasedKey_ = key.detail;
        releasedAt_ = key.time;
    } else if (event.response_type == XCB_KEY_PRESS) {
        keyPressed(reinterpret_cast<const xcb_key_press_event_t&>(event));
    } else if (event.response_type == XCB_GE_GENERIC) {
        const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
        if (devices_.isHierarchyChange(event))
            grabDevices();
        else if (generic.extension == devices_.opcode() &&
                 generic.event_type == XCB_INPUT_KEY_PRESS)
            deviceKeyPressed(reinterpret_cast<const xcb_input_key_press_event_t&>(event));
        else if (generic.extension == devices_.opcode() &&
                 generic.event_type == XCB_INPUT_KEY_RELEASE)
            deviceKeyReleased(reinterpret_cast<const xcb_input_key_release_event_t&>(event));
    } else if (X11KeyMap::isChange(x11_, event)) {
        if (!keyMapChanges_.isActive()) keyMapChanges_.start();
    }
}

void X11Hotkeys::keyPressed(const xcb_key_press_event_t& event) {
    // Our grabs report to the root window; any other window receives typed text.
    if (event.event != x11_.root()) return;
    if (event.detail == releasedKey_ && event.time - releasedAt_ <= repeatGap) return;
    // The upper half of the state contains mouse buttons and the keyboard layout.
    press({event.detail, static_cast<std::uint8_t>(event.state & 0xFF & ~map_.lockBits())});
}

/// The grab detaches the device while the key is down. The release of a modifier would not reach
/// the core keyboard, where the modifier would stay pressed. So release the device at once.
void X11Hotkeys::deviceKeyPressed(const xcb_input_key_press_event_t& event) {
    if (event.event != x11_.root()) return;
    const auto keycode = static_cast<xcb_keycode_t>(event.detail);
    if (std::ranges::none_of(deviceGrabs_, [&](const DeviceGrab& grab) {
            return grab.device == event.deviceid && grab.keycode == keycode;
        }))
        return;
    devices_.letGo(event.deviceid);
    if ((event.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT) != 0) return;
    devices_.fake().tapNeutralKey();
    const auto bits = [this](std::uint32_t state) {
        return static_cast<std::uint8_t>(state & 0xFF & ~map_.lockBits());
    };
    const std::uint8_t alt = map_.bits(Shortcut::Modifiers::option).value_or(0);
    // A modifier may be pressed on another keyboard. The event does not show that, but the state of
    // the core pointer does, as long as the modifier is pressed.
    const XReply<xcb_query_pointer_reply_t> core(xcb_query_pointer_reply(
        x11_.connection(), xcb_query_pointer(x11_.connection(), x11_.root()), nullptr));
    for (const std::uint32_t state : {event.mods.effective, core ? core->mask : 0U}) {
        for (const std::uint8_t extra : {std::uint8_t(0), alt}) {
            const Grab grab{keycode, static_cast<std::uint8_t>(bits(state) & ~extra)};
            if (isRegistered(grab)) return press(grab);
        }
    }
}

void X11Hotkeys::deviceKeyReleased(const xcb_input_key_press_event_t& event) {
    // The key was released at the moment at which the device was detached.
    if (event.event == x11_.root())
        devices_.fake().releaseKey(static_cast<xcb_keycode_t>(event.detail));
}

void X11Hotkeys::press(const Grab& grab) {
    const auto registration = std::ranges::find(registrations_ | std::views::values,
                                                std::optional(grab), &Registration::grab);
    if (registration.base() == registrations_.end() || !pressed_) return;
    const auto number = (*registration).number;
    // A grabbed key keeps the keyboard until it is released, unless the handler takes the keyboard
    // for longer. So nothing here may release the keyboard.
    const auto pressed = pressed_;
    pressed(number);
}

void X11Hotkeys::followKeyMap() {
    X11KeyMap now = X11KeyMap::read(x11_);
    // A second keyboard may have the same map.
    if (now.hasSameKeys(map_)) return;
    for (Registration& registration : registrations_ | std::views::values) release(registration);
    map_ = std::move(now);
    for (Registration& registration : registrations_ | std::views::values) take(registration);
    grabDevices();
}

void X11Hotkeys::take(Registration& registration) {
    const auto keycode = map_.keyCodes().xKeycode(registration.keyCode);
    const auto modifierBits = map_.bits(registration.modifiers);
    if (!keycode || !modifierBits) return;
    const Grab grab{*keycode, *modifierBits};
    // The server lets a client take the same grab twice, but one ungrab removes it.
    if (isRegistered(grab)) return;

    xcb_connection_t* const connection = x11_.connection();
    std::vector<xcb_void_cookie_t> cookies;
    for (const std::uint8_t locks : subsets(map_.lockBits())) {
        cookies.push_back(xcb_grab_key_checked(
            connection, 0, x11_.root(), static_cast<std::uint16_t>(grab.modifierBits | locks),
            grab.keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    registration.grab = grab;
    bool refused = false;
    // Only the first check waits for the server: its reply also confirms the requests before it.
    for (const xcb_void_cookie_t cookie : cookies) {
        const XReply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
        refused = refused || error;
    }
    if (refused) {
        release(registration);
        x11_.flush();
        return;
    }
    const auto alt = map_.bits(Shortcut::Modifiers::option);
    registration.firesWithAlt =
        alt && isFree({grab.keycode, static_cast<std::uint8_t>(grab.modifierBits | *alt)});
}

bool X11Hotkeys::isRegistered(const Grab& grab) const {
    return std::ranges::any_of(registrations_ | std::views::values, [&](const auto& registration) {
        return registration.grab == std::optional(grab);
    });
}

/// Whether neither another program nor another hotkey of this program has the combination. A device
/// grab would silently take it from another program.
bool X11Hotkeys::isFree(const Grab& grab) {
    if (isRegistered(grab)) return false;
    xcb_connection_t* const connection = x11_.connection();
    const XReply<xcb_generic_error_t> error(xcb_request_check(
        connection, xcb_grab_key_checked(connection, 0, x11_.root(), grab.modifierBits,
                                         grab.keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    if (error) return false;
    xcb_ungrab_key(connection, grab.keycode, x11_.root(), grab.modifierBits);
    return true;
}

void X11Hotkeys::grabDevices() {
    xcb_connection_t* const connection = x11_.connection();
    for (const auto& grab : deviceGrabs_) {
        xcb_input_xi_passive_ungrab_device(connection, x11_.root(), grab.keycode, grab.device,
                                           static_cast<std::uint16_t>(grab.modifiers.size()),
                                           XCB_INPUT_GRAB_TYPE_KEYCODE, grab.modifiers.data());
    }
    deviceGrabs_.clear();
    const auto alt = map_.bits(Shortcut::Modifiers::option).value_or(0);
    const auto keyboards = registrations_.empty() || !grabsDevices_ ? std::vector<std::uint16_t>()
                                                                    : devices_.keyboards();
    for (const auto device : keyboards) {
        for (const Registration& registration : registrations_ | std::views::values) {
            if (!registration.grab) continue;
            DeviceGrab grab{device, registration.grab->keycode, {}};
            const Grab withAlt{grab.keycode,
                               static_cast<std::uint8_t>(registration.grab->modifierBits | alt)};
            const bool firesWithAlt = registration.firesWithAlt && !isRegistered(withAlt);
            for (const std::uint8_t locks : subsets(map_.lockBits())) {
                const std::uint32_t bits = registration.grab->modifierBits | locks;
                grab.modifiers.push_back(bits);
                if (firesWithAlt) grab.modifiers.push_back(bits | alt);
            }
            const std::uint32_t mask =
                XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
            // If another client's device grab has the key, the core grab still works.
            xcb_discard_reply(
                connection,
                xcb_input_xi_passive_grab_device(
                    connection, XCB_CURRENT_TIME, x11_.root(), XCB_CURSOR_NONE, grab.keycode,
                    device, static_cast<std::uint16_t>(grab.modifiers.size()), 1,
                    XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC,
                    XCB_INPUT_GRAB_MODE_22_ASYNC, 0, &mask, grab.modifiers.data())
                    .sequence);
            deviceGrabs_.push_back(std::move(grab));
        }
    }
    x11_.flush();
}

void X11Hotkeys::release(Registration& registration) {
    if (!registration.grab) return;
    for (const std::uint8_t locks : subsets(map_.lockBits())) {
        xcb_ungrab_key(x11_.connection(), registration.grab->keycode, x11_.root(),
                       static_cast<std::uint16_t>(registration.grab->modifierBits | locks));
    }
    registration.grab.reset();
    registration.firesWithAlt = false;
}

}  // namespace OrvelSystem
