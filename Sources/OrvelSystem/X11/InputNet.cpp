#include "OrvelSystem/X11/InputNet.h"

#include <array>
#include <utility>

#include <xcb/xinput.h>

#include "OrvelSystem/X11/InputDevices.h"
#include "OrvelSystem/X11/XReply.h"

namespace OrvelSystem {

namespace {

constexpr std::uint32_t anyModifier = 1U << 31;
constexpr xcb_input_device_id_t allMasters = XCB_INPUT_DEVICE_ALL_MASTER;

}  // namespace

InputNet::InputNet(xcb_connection_t* connection, xcb_window_t root)
    : connection_(connection), root_(root), hasXInput_(xinputOpcode(connection) != 0) {}

bool InputNet::putUp() {
    if (isUp_ || !hasXInput_) return isUp_;
    isUp_ = true;
    constexpr std::array grabs{
        std::pair(XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_XI_EVENT_MASK_KEY_PRESS),
        std::pair(XCB_INPUT_GRAB_TYPE_BUTTON, XCB_INPUT_XI_EVENT_MASK_BUTTON_PRESS)};
    for (const auto& [type, events] : grabs) {
        const auto mask = static_cast<std::uint32_t>(events);
        const XReply<xcb_input_xi_passive_grab_device_reply_t> reply(
            xcb_input_xi_passive_grab_device_reply(
                connection_,
                xcb_input_xi_passive_grab_device(
                    connection_, XCB_CURRENT_TIME, root_, XCB_CURSOR_NONE, XCB_GRAB_ANY, allMasters,
                    1, 1, static_cast<std::uint8_t>(type), XCB_INPUT_GRAB_MODE_22_ASYNC,
                    XCB_INPUT_GRAB_MODE_22_ASYNC, 0, &mask, &anyModifier),
                nullptr));
        // The reply lists the modifiers whose grab another client has.
        isUp_ = isUp_ && reply && reply->num_modifiers == 0;
    }
    if (!isUp_) {
        isUp_ = true;
        takeDown();
    }
    return isUp_;
}

void InputNet::watchGrabs() {
    if (recording_) return;
    recording_.emplace();
    xcb_record_range_t range{};
    range.core_requests = {XCB_GRAB_KEY, XCB_GRAB_KEY};
    range.ext_requests.major.first = range.ext_requests.major.last =
        recording_->opcodeOf(xcb_input_id);
    range.ext_requests.minor = {XCB_INPUT_XI_PASSIVE_GRAB_DEVICE, XCB_INPUT_XI_PASSIVE_GRAB_DEVICE};
    recording_->start(range);
}

void InputNet::handleGrabs() {
    if (!recording_) return;
    const auto own = xcb_get_setup(connection_)->resource_id_base;
    bool isOlder = false;
    recording_->read([&](const auto& reply) {
        isOlder |= reply.category == RequestRecording::fromClient && reply.xid_base != own;
    });
    if (isOlder && std::exchange(isUp_, false)) putUp();
}

void InputNet::takeDown() {
    if (!isUp_) return;
    isUp_ = false;
    for (const auto type : {XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_TYPE_BUTTON})
        xcb_input_xi_passive_ungrab_device(connection_, root_, XCB_GRAB_ANY, allMasters, 1,
                                           static_cast<std::uint8_t>(type), &anyModifier);
    xcb_flush(connection_);
}

}  // namespace OrvelSystem
