#include "OrvelSystem/X11/SaverSuspensions.h"

#include <span>

#include <xcb/screensaver.h>

#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

SaverSuspensions::SaverSuspensions()
    : saverOpcode_(recording_.opcodeOf(xcb_screensaver_id)),
      ownClient_(xcb_get_setup(X11::shared().connection())->resource_id_base) {
    xcb_record_range_t range{};
    range.ext_requests.major = {saverOpcode_, saverOpcode_};
    range.ext_requests.minor = {XCB_SCREENSAVER_SUSPEND, XCB_SCREENSAVER_SUSPEND};
    range.client_died = 1;
    if (saverOpcode_ == 0 || !recording_.start(range)) return;
    notifier_ = std::make_unique<QSocketNotifier>(recording_.descriptor(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { read(); });
}

SaverSuspensions::~SaverSuspensions() = default;

void SaverSuspensions::read() {
    if (recording_.read([this](const auto& reply) { take(reply); })) return;
    // Without the recording, the end of a suspension would go unnoticed, so assume that there is
    // none.
    notifier_->setEnabled(false);
    suspensions_.clear();
}

void SaverSuspensions::take(const xcb_record_enable_context_reply_t& reply) {
    if (reply.xid_base == ownClient_) return;
    if (reply.category == RequestRecording::clientDied) suspensions_.erase(reply.xid_base);
    if (reply.category != RequestRecording::fromClient) return;
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
