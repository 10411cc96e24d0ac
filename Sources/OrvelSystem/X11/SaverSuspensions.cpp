#include "OrvelSystem/X11/SaverSuspensions.h"

#include <span>
#include <utility>

#include <xcb/screensaver.h>
#include <xcb/xcbext.h>

#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

namespace {

// Categories of recorded protocol elements.
constexpr std::uint8_t fromClient = 1;
constexpr std::uint8_t clientDied = 3;

}  // namespace

SaverSuspensions::Connection SaverSuspensions::connect() {
    Connection connection(xcb_connect(nullptr, nullptr));
    return xcb_connection_has_error(connection.get()) == 0 ? std::move(connection) : nullptr;
}

SaverSuspensions::SaverSuspensions() : control_(connect()), data_(connect()) {
    if (!control_ || !data_ || !start()) return;
    notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(data_.get()),
                                                  QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { read(); });
}

SaverSuspensions::~SaverSuspensions() = default;

bool SaverSuspensions::start() {
    const auto* const saver = xcb_get_extension_data(control_.get(), &xcb_screensaver_id);
    const auto* const record = xcb_get_extension_data(control_.get(), &xcb_record_id);
    if (!saver || !saver->present || !record || !record->present) return false;
    saverOpcode_ = saver->major_opcode;
    ownClient_ = xcb_get_setup(X11::shared().connection())->resource_id_base;
    const XReply<xcb_record_query_version_reply_t> version(xcb_record_query_version_reply(
        control_.get(), xcb_record_query_version(control_.get(), 1, 13), nullptr));
    if (!version) return false;
    xcb_record_range_t range{};
    range.ext_requests.major = {saverOpcode_, saverOpcode_};
    range.ext_requests.minor = {XCB_SCREENSAVER_SUSPEND, XCB_SCREENSAVER_SUSPEND};
    range.client_died = 1;
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

void SaverSuspensions::read() {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    while (xcb_poll_for_reply(data_.get(), sequence_, &reply, &error) != 0) {
        const XReply<xcb_generic_error_t> refused(error);
        const XReply<xcb_record_enable_context_reply_t> element(
            static_cast<xcb_record_enable_context_reply_t*>(std::exchange(reply, nullptr)));
        if (!element) return end();
        take(*element);
    }
    if (xcb_connection_has_error(data_.get()) != 0) end();
}

// Without the recording, the end of a suspension would go unnoticed, so assume that there is none.
void SaverSuspensions::end() {
    notifier_->setEnabled(false);
    suspensions_.clear();
}

void SaverSuspensions::take(const xcb_record_enable_context_reply_t& reply) {
    if (reply.xid_base == ownClient_) return;
    if (reply.category == clientDied) suspensions_.erase(reply.xid_base);
    if (reply.category != fromClient) return;
    using Request = xcb_screensaver_suspend_request_t;
    const auto* const requests =
        reinterpret_cast<const Request*>(xcb_record_enable_context_data(&reply));
    const auto size = static_cast<std::size_t>(xcb_record_enable_context_data_length(&reply));
    // A suspend request is 8 bytes long; stop at anything else that the server has recorded.
    for (const auto& request : std::span(requests, size / sizeof(Request))) {
        if (request.major_opcode != saverOpcode_ || request.minor_opcode != XCB_SCREENSAVER_SUSPEND)
            return;
        int& count = suspensions_[reply.xid_base];
        count += request.suspend != 0 ? 1 : -1;
        if (count <= 0) suspensions_.erase(reply.xid_base);
    }
}

}  // namespace OrvelSystem
