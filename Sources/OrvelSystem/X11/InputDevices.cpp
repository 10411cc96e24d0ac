#include "OrvelSystem/X11/InputDevices.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

#include <xcb/xinput.h>

// This C header has a field named `explicit`, which is a C++ keyword.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include "OrvelSystem/X11/XReply.h"

namespace OrvelSystem {

namespace {

constexpr std::uint32_t anyModifier = 1U << 31;

constexpr std::uint32_t keyboardEvents =
    XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
constexpr std::uint32_t pointerEvents = XCB_INPUT_XI_EVENT_MASK_BUTTON_PRESS |
                                        XCB_INPUT_XI_EVENT_MASK_BUTTON_RELEASE |
                                        XCB_INPUT_XI_EVENT_MASK_MOTION;

std::uint8_t passiveGrabType(bool isKeyboard) {
    return static_cast<std::uint8_t>(isKeyboard ? XCB_INPUT_GRAB_TYPE_KEYCODE
                                                : XCB_INPUT_GRAB_TYPE_BUTTON);
}

bool hasKeys(const xcb_input_xi_device_info_t& info) {
    for (auto at = xcb_input_xi_device_info_classes_iterator(&info); at.rem;
         xcb_input_device_class_next(&at)) {
        if (at.data->type == XCB_INPUT_DEVICE_CLASS_TYPE_KEY) return true;
    }
    return false;
}

}  // namespace

std::uint8_t xinputOpcode(xcb_connection_t* connection) {
    const auto* const input = xcb_get_extension_data(connection, &xcb_input_id);
    if (!input || !input->present) return 0;
    const XReply<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        connection, xcb_input_xi_query_version(connection, 2, 2), nullptr));
    const bool isEnough = version && (version->major_version > 2 ||
                                      (version->major_version == 2 && version->minor_version >= 2));
    return isEnough ? input->major_opcode : std::uint8_t(0);
}

InputDevices::InputDevices(xcb_connection_t* connection, xcb_window_t root)
    : connection_(connection),
      root_(root),
      opcode_(xinputOpcode(connection)),
      fake_(connection, root) {
    // Required once before any other request of this extension.
    xcb_discard_reply(connection, xcb_xkb_use_extension(connection, 1, 0).sequence);
}

std::vector<InputDevices::Device> InputDevices::list() const {
    const auto pointerCookie = xcb_input_xi_get_client_pointer(connection_, XCB_NONE);
    const auto devicesCookie = xcb_input_xi_query_device(connection_, XCB_INPUT_DEVICE_ALL);
    const XReply<xcb_input_xi_get_client_pointer_reply_t> pointer(
        xcb_input_xi_get_client_pointer_reply(connection_, pointerCookie, nullptr));
    const XReply<xcb_input_xi_query_device_reply_t> reply(
        xcb_input_xi_query_device_reply(connection_, devicesCookie, nullptr));
    if (!pointer || !reply) return {};

    std::vector<Device> devices;
    std::uint16_t coreKeyboard = 0;
    const auto infos = xcb_input_xi_query_device_infos_iterator(reply.get());
    for (auto at = infos; at.rem; xcb_input_xi_device_info_next(&at)) {
        if (at.data->deviceid == pointer->deviceid) coreKeyboard = at.data->attachment;
    }
    for (auto at = infos; at.rem; xcb_input_xi_device_info_next(&at)) {
        const auto& info = *at.data;
        const bool isFloating = info.type == XCB_INPUT_DEVICE_TYPE_FLOATING_SLAVE;
        if (!isFloating && info.type != XCB_INPUT_DEVICE_TYPE_SLAVE_POINTER &&
            info.type != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD)
            continue;
        const std::string_view name(
            xcb_input_xi_device_info_name(&info),
            static_cast<std::size_t>(xcb_input_xi_device_info_name_length(&info)));
        devices.push_back(
            {.id = info.deviceid,
             .isKeyboard = hasKeys(info),
             .kind = name.find("XTEST") != std::string_view::npos ? Kind::xtest : Kind::hardware,
             .isEnabled = info.enabled != 0,
             .isAttachedToCore = !isFloating && (info.attachment == pointer->deviceid ||
                                                 info.attachment == coreKeyboard)});
    }
    return devices;
}

void InputDevices::take() {
    if (!areAvailable()) return;
    // No key event may occur between the grabs and the releases.
    xcb_grab_server(connection_);
    auto devices = list();
    for (const auto& device : devices) {
        // If a shortcut came from the XTEST keyboard, its passive grab has detached that device,
        // and the releases below would have no effect.
        if (device.kind == Kind::xtest) ungrab(device.id);
    }
    std::erase_if(devices, [](const auto& device) { return device.kind == Kind::xtest; });
    grab(devices);
    // A desktop opens its menu when Super is released and no other key was pressed in between.
    fake_.tapNeutralKey();
    fake_.releaseKeys();
    xcb_ungrab_server(connection_);
    xcb_flush(connection_);
}

void InputDevices::takeXTest() {
    if (!areAvailable()) return;
    auto devices = list();
    std::erase_if(devices, [this](const auto& device) {
        return device.kind == Kind::hardware && isHeld(device.id);
    });
    grab(devices);
    xcb_flush(connection_);
}

void InputDevices::takeAgain() {
    auto devices = list();
    std::erase_if(devices, [this](const auto& device) {
        return device.kind == Kind::xtest && !isHeld(device.id);
    });
    grab(devices);
    xcb_flush(connection_);
}

bool InputDevices::takeStrays() {
    if (!areAvailable()) return false;
    // Events of a held device that is attached again would be received twice.
    std::vector<Device> attached;
    std::vector<Device> strays;
    for (const auto& device : list()) {
        if (device.kind != Kind::hardware) continue;
        if (!device.isAttachedToCore)
            strays.push_back(device);
        else if (isHeld(device.id))
            attached.push_back(device);
    }
    // The server attaches a released device to the master of its last grab, so grab it once more
    // before releasing it.
    grab(attached);
    for (const auto& device : attached) {
        ungrab(device.id);
        std::erase(held_, device.id);
    }
    grab(strays);
    xcb_flush(connection_);
    return !strays.empty();
}

bool InputDevices::isHeld(std::uint16_t device) const {
    return std::ranges::find(held_, device) != held_.end();
}

void InputDevices::grab(const std::vector<Device>& devices) {
    std::vector<xcb_input_xi_grab_device_cookie_t> cookies;
    for (const auto& device : devices) {
        const std::uint32_t mask = device.isKeyboard ? keyboardEvents : pointerEvents;
        // On the root window, since no client can end that grab by unmapping or destroying it.
        // Grabbing a held device again only detaches it again, which is necessary if another client
        // has attached it to another master.
        cookies.push_back(xcb_input_xi_grab_device(
            connection_, root_, XCB_CURRENT_TIME, XCB_CURSOR_NONE, device.id,
            XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, 0, 1, &mask));
    }
    const XReply<xcb_xkb_get_state_reply_t> state(xcb_xkb_get_state_reply(
        connection_, xcb_xkb_get_state(connection_, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    for (std::size_t i = 0; i < devices.size(); ++i) {
        const auto& device = devices[i];
        const XReply<xcb_input_xi_grab_device_reply_t> reply(
            xcb_input_xi_grab_device_reply(connection_, cookies[i], nullptr));
        if (!reply || reply->status != XCB_GRAB_STATUS_SUCCESS) continue;
        if (std::ranges::find(held_, device.id) == held_.end()) held_.push_back(device.id);
        std::erase(late_, device.id);
        if (!device.isKeyboard) continue;
        holdsKeyboard_ = true;
        // A detached device has its own layout group, which may differ from the one in use.
        if (state) xcb_xkb_latch_lock_state(connection_, device.id, 0, 0, 1, state->group, 0, 0, 0);
    }
}

void InputDevices::ungrab(std::uint16_t device) {
    xcb_input_xi_ungrab_device(connection_, XCB_CURRENT_TIME, device);
}

void InputDevices::release() {
    attach();
    attached_.clear();
}

void InputDevices::attach() {
    late_.insert(late_.end(), held_.begin(), held_.end());
    attached_ = std::exchange(held_, {});
    holdsKeyboard_ = false;
    releaseLate();
}

void InputDevices::releaseLate() {
    if (late_.empty()) return;
    // No other client may disable a device in between.
    xcb_grab_server(connection_);
    const auto devices = list();
    std::erase_if(late_, [&](auto id) {
        const auto device = std::ranges::find(devices, id, &Device::id);
        if (device != devices.end() && !device->isEnabled) return false;
        ungrab(id);
        return true;
    });
    xcb_ungrab_server(connection_);
    xcb_flush(connection_);
}

void InputDevices::grabPassively(bool grab) {
    if (!grab) {
        for (const auto& [device, isKeyboard] : std::exchange(passive_, {}))
            ungrabPassively(device, isKeyboard);
    } else if (areAvailable()) {
        // Existing grabs stay in place meanwhile.
        passive_.clear();
        for (const auto& device : list()) {
            const std::uint32_t mask = device.isKeyboard ? keyboardEvents : pointerEvents;
            xcb_discard_reply(
                connection_,
                xcb_input_xi_passive_grab_device(
                    connection_, XCB_CURRENT_TIME, root_, XCB_CURSOR_NONE, XCB_GRAB_ANY, device.id,
                    1, 1, passiveGrabType(device.isKeyboard), XCB_INPUT_GRAB_MODE_22_ASYNC,
                    XCB_INPUT_GRAB_MODE_22_ASYNC, 0, &mask, &anyModifier)
                    .sequence);
            passive_.push_back({device.id, device.isKeyboard});
        }
    }
    xcb_flush(connection_);
}

void InputDevices::letFakedInputPass() {
    for (const auto& device : list()) {
        if (device.kind == Kind::xtest) ungrabPassively(device.id, device.isKeyboard);
    }
}

void InputDevices::ungrabPassively(std::uint16_t device, bool isKeyboard) {
    xcb_input_xi_passive_ungrab_device(connection_, root_, XCB_GRAB_ANY, device, 1,
                                       passiveGrabType(isKeyboard), &anyModifier);
}

std::vector<std::uint16_t> InputDevices::keyboards() const {
    std::vector<std::uint16_t> ids;
    if (opcode_ == 0) return ids;
    for (const auto& device : list()) {
        if (device.isKeyboard) ids.push_back(device.id);
    }
    return ids;
}

void InputDevices::letGo(std::uint16_t keyboard) {
    // Unlike the grabs of `release`, this one has ended if the device has been disabled, because
    // the server releases its keys first.
    ungrab(keyboard);
    xcb_flush(connection_);
}

bool InputDevices::isGeneric(const xcb_generic_event_t& event, std::uint16_t type) const {
    if (opcode_ == 0 || event.response_type != XCB_GE_GENERIC) return false;
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    return generic.extension == opcode_ && generic.event_type == type;
}

std::optional<InputDevices::Key> InputDevices::keyOf(const xcb_generic_event_t& event) const {
    const bool isPress = isGeneric(event, XCB_INPUT_KEY_PRESS);
    if (!isPress && !isGeneric(event, XCB_INPUT_KEY_RELEASE)) return {};
    const auto& key = reinterpret_cast<const xcb_input_key_press_event_t&>(event);
    const auto has = [&](const auto& devices) {
        return std::ranges::find(devices, key.deviceid) != devices.end();
    };
    if (!has(held_) && !has(attached_)) return {};
    constexpr int groupShift = 13;
    return Key{.isPress = isPress,
               .code = static_cast<xcb_keycode_t>(key.detail),
               .time = key.time,
               .state = static_cast<std::uint16_t>((key.mods.effective & 0xFF) |
                                                   (key.group.effective & 0x3) << groupShift)};
}

void InputDevices::watchHierarchy() {
    if (opcode_ == 0) return;
    // A connection has a single selection, which includes Qt's.
    std::uint32_t mask = XCB_INPUT_XI_EVENT_MASK_HIERARCHY;
    const XReply<xcb_input_xi_get_selected_events_reply_t> selected(
        xcb_input_xi_get_selected_events_reply(
            connection_, xcb_input_xi_get_selected_events(connection_, root_), nullptr));
    if (selected) {
        for (auto at = xcb_input_xi_get_selected_events_masks_iterator(selected.get()); at.rem;
             xcb_input_event_mask_next(&at)) {
            if (at.data->deviceid == XCB_INPUT_DEVICE_ALL && at.data->mask_len > 0)
                mask |= xcb_input_event_mask_mask(at.data)[0];
        }
    }
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } wanted{{XCB_INPUT_DEVICE_ALL, 1}, mask};
    xcb_input_xi_select_events(connection_, root_, 1, &wanted.head);
    xcb_flush(connection_);
}

bool InputDevices::isHierarchyChange(const xcb_generic_event_t& event) const {
    return isGeneric(event, XCB_INPUT_HIERARCHY);
}

}  // namespace OrvelSystem
