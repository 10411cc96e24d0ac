#include "OrvelSystem/X11/RequestRecording.h"

#include <utility>

#include <xcb/xcbext.h>

#include "OrvelSystem/X11/XReply.h"

namespace OrvelSystem {

RequestRecording::Connection RequestRecording::connect(const char* display) {
    Connection connection(xcb_connect(display, nullptr));
    return xcb_connection_has_error(connection.get()) == 0 ? std::move(connection) : nullptr;
}

RequestRecording::RequestRecording(const char* display)
    : control_(connect(display)), data_(connect(display)) {}

std::uint8_t RequestRecording::opcodeOf(xcb_extension_t& extension) const {
    const auto* const data =
        control_ ? xcb_get_extension_data(control_.get(), &extension) : nullptr;
    return data && data->present ? data->major_opcode : std::uint8_t(0);
}

bool RequestRecording::start(const xcb_record_range_t& range) {
    if (!control_ || !data_ || opcodeOf(xcb_record_id) == 0) return false;
    const XReply<xcb_record_query_version_reply_t> version(xcb_record_query_version_reply(
        control_.get(), xcb_record_query_version(control_.get(), 1, 13), nullptr));
    if (!version) return false;
    constexpr xcb_record_client_spec_t everyone = XCB_RECORD_CS_ALL_CLIENTS;
    const auto context = xcb_generate_id(control_.get());
    const XReply<xcb_generic_error_t> error(xcb_request_check(
        control_.get(),
        xcb_record_create_context_checked(control_.get(), context, 0, 1, 1, &everyone, &range)));
    if (error) return false;
    sequence_ = xcb_record_enable_context(data_.get(), context).sequence;
    xcb_flush(data_.get());
    return true;
}

int RequestRecording::descriptor() const {
    return sequence_ != 0 ? xcb_get_file_descriptor(data_.get()) : -1;
}

bool RequestRecording::read(
    const std::function<void(const xcb_record_enable_context_reply_t&)>& take) {
    if (sequence_ == 0) return false;
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    while (xcb_poll_for_reply(data_.get(), sequence_, &reply, &error) != 0) {
        const XReply<xcb_generic_error_t> refused(error);
        const XReply<xcb_record_enable_context_reply_t> element(
            static_cast<xcb_record_enable_context_reply_t*>(std::exchange(reply, nullptr)));
        if (!element) {
            sequence_ = 0;
            return false;
        }
        take(*element);
    }
    if (xcb_connection_has_error(data_.get()) != 0) sequence_ = 0;
    return sequence_ != 0;
}

}  // namespace OrvelSystem
