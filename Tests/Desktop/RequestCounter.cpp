#include "RequestCounter.h"

#include <xcb/record.h>
#include <xcb/res.h>

#include "Eventually.h"
#include "Screen.h"

namespace DesktopTest {

namespace {

constexpr std::uint8_t fromClient = 1;  // category of a recorded element
constexpr std::uint8_t firstExtension = 128;

xcb_connection_t* connect(const std::string& display) {
    auto* const connection = xcb_connect(display.c_str(), nullptr);
    if (xcb_connection_has_error(connection) == 0) return connection;
    xcb_disconnect(connection);
    throw std::runtime_error("cannot connect to display " + display);
}

void require(xcb_connection_t* connection, xcb_void_cookie_t cookie, const char* what) {
    const XReply<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
    if (error) throw std::runtime_error(std::string(what) + " is refused");
}

}  // namespace

RequestCounter::RequestCounter(const std::string& display, pid_t pid)
    : control_(connect(display)), data_(connect(display)) {
    ownClient_ = xcb_get_setup(control_)->resource_id_base;
    auto clients = clientsOf(pid);
    if (clients.empty()) throw std::runtime_error("the program has no connection");
    // This connection's own requests mark in the record how far it has come.
    clients.push_back(ownClient_);
    start(clients);
    take();
}

RequestCounter::RequestCounter(const std::string& display)
    : control_(connect(display)), data_(connect(display)) {
    ownClient_ = xcb_get_setup(control_)->resource_id_base;
    start({XCB_RECORD_CS_ALL_CLIENTS});
    take();
}

RequestCounter::~RequestCounter() {
    xcb_record_disable_context(control_, context_);
    xcb_disconnect(control_);
    xcb_disconnect(data_);
}

RequestCounter::Clients RequestCounter::clientsOf(pid_t pid) {
    const xcb_res_client_id_spec_t all{0, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto ids =
        replyOf(control_, xcb_res_query_client_ids, xcb_res_query_client_ids_reply, 1, &all);
    if (!ids) throw std::runtime_error("the server does not tell whose connections it has");
    Clients clients;
    for (auto id = xcb_res_query_client_ids_ids_iterator(ids.get()); id.rem != 0;
         xcb_res_client_id_value_next(&id)) {
        if (xcb_res_client_id_value_value_length(id.data) > 0 &&
            *xcb_res_client_id_value_value(id.data) == static_cast<std::uint32_t>(pid))
            clients.push_back(id.data->spec.client);
    }
    return clients;
}

void RequestCounter::start(const Clients& clients) {
    const auto version =
        replyOf(control_, xcb_record_query_version, xcb_record_query_version_reply, 1, 13);
    if (!version) throw std::runtime_error("the server does not record");
    xcb_record_range_t everything{};
    everything.core_requests = {1, firstExtension - 1};
    everything.ext_requests.major = {firstExtension, 255};
    everything.ext_requests.minor = {0, 0xFFFF};
    context_ = xcb_generate_id(control_);
    require(control_,
            xcb_record_create_context_checked(control_, context_, 0,
                                              static_cast<std::uint32_t>(clients.size()), 1,
                                              clients.data(), &everything),
            "recording");
    enabled_ = xcb_record_enable_context(data_, context_).sequence;
    // The first reply confirms that recording has started.
    const XReply<xcb_record_enable_context_reply_t> begun(
        xcb_record_enable_context_reply(data_, {enabled_}, nullptr));
    if (!begun) throw std::runtime_error("the recording does not begin");
}

RequestCounter::Counts RequestCounter::take() {
    Counts sum;
    for (const auto& [client, counts] : takeByClient())
        for (const auto& [request, count] : counts) sum[request] += count;
    return sum;
}

std::map<RequestCounter::Client, RequestCounter::Counts> RequestCounter::takeByClient() {
    std::map<Client, Counts> counts;
    const auto mark = replyOf(control_, xcb_get_input_focus, xcb_get_input_focus_reply);
    for (bool isMarkSeen = false; !isMarkSeen;) {
        const XReply<xcb_record_enable_context_reply_t> reply(
            xcb_record_enable_context_reply(data_, {enabled_}, nullptr));
        if (!reply) throw std::runtime_error("the recording has ended");
        if (reply->category != fromClient) continue;
        const auto* const bytes = xcb_record_enable_context_data(reply.get());
        const auto size =
            static_cast<std::size_t>(xcb_record_enable_context_data_length(reply.get()));
        auto& unfinished = unfinished_[reply->xid_base];
        std::size_t at = std::min(unfinished, size);
        unfinished -= at;
        while (at + 4 <= size) {
            const std::uint8_t major = bytes[at];
            const std::uint8_t minor = major >= firstExtension ? bytes[at + 1] : 0;
            std::uint16_t units = 0;
            std::memcpy(&units, bytes + at + 2, sizeof units);
            std::uint32_t length = units;
            // A request that is too long for 16 bits has its length in the next word.
            if (length == 0 && at + 8 <= size) std::memcpy(&length, bytes + at + 4, sizeof length);
            const std::size_t end = at + std::max<std::size_t>(length, 1) * 4;
            if (end > size) unfinished = end - size;
            at = std::min(end, size);
            if (reply->xid_base != ownClient_)
                ++counts[reply->xid_base][{major, minor}];
            else if (major == XCB_GET_INPUT_FOCUS)
                isMarkSeen = true;
        }
    }
    return counts;
}

bool RequestCounter::waitForRest() {
    return eventually([this] {
        take();
        std::this_thread::sleep_for(std::chrono::seconds(1));
        return take().empty();
    });
}

int RequestCounter::total(const Counts& counts) {
    int sum = 0;
    for (const auto& [request, count] : counts) sum += count;
    return sum;
}

std::string RequestCounter::describe(const Counts& counts) {
    std::map<std::uint8_t, std::string> extensions;
    const auto list = replyOf(control_, xcb_list_extensions, xcb_list_extensions_reply);
    for (auto name = xcb_list_extensions_names_iterator(list.get()); name.rem != 0;
         xcb_str_next(&name)) {
        const std::string text(xcb_str_name(name.data), name.data->name_len);
        const XReply<xcb_query_extension_reply_t> extension(xcb_query_extension_reply(
            control_, xcb_query_extension(control_, name.data->name_len, text.data()), nullptr));
        if (extension && extension->present != 0) extensions[extension->major_opcode] = text;
    }
    std::vector<std::pair<Request, int>> sorted(counts.begin(), counts.end());
    std::ranges::sort(sorted, [](const auto& a, const auto& b) { return a.second > b.second; });
    std::string text;
    for (const auto& [request, count] : sorted) {
        const auto extension = extensions.find(request.major);
        if (!text.empty()) text += ", ";
        text += extension == extensions.end()
                    ? "core " + std::to_string(request.major)
                    : extension->second + ' ' + std::to_string(request.minor);
        text += ": " + std::to_string(count);
    }
    return text;
}

}  // namespace DesktopTest
