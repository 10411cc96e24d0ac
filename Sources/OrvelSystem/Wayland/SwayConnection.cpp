#include "OrvelSystem/Wayland/SwayConnection.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace OrvelSystem {

using nlohmann::json;
using OrvelCore::FileDescriptor;

namespace {

constexpr timeval patience{.tv_sec = 0, .tv_usec = 250'000};
/// A message is this text, the length of the payload, the type and the payload.
constexpr std::string_view magic = "i3-ipc";
constexpr std::size_t headerSize = 14;
constexpr std::size_t longestPayload = 64UL << 20;
constexpr std::uint32_t eventBit = 0x80000000;
constexpr std::array<std::string_view, 8> eventNames{
    "workspace", "output", "mode", "window", "barconfig_update", "binding", "shutdown", "tick"};
constexpr std::string_view wantedEvents = R"(["binding","window","workspace"])";

FileDescriptor connected() {
    const char* const path = std::getenv("SWAYSOCK");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path == nullptr || *path == '\0' || std::strlen(path) >= sizeof(address.sun_path))
        return FileDescriptor(-1);
    std::strcpy(address.sun_path, path);
    FileDescriptor file(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    setsockopt(file.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
    setsockopt(file.get(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof(patience));
    if (connect(file.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0)
        return FileDescriptor(-1);
    return file;
}

bool sendMessage(const FileDescriptor& file, SwayConnection::Message type,
                 std::string_view payload) {
    std::string bytes(magic);
    const auto append = [&bytes](std::uint32_t number) {
        bytes.append(reinterpret_cast<const char*>(&number), sizeof(number));
    };
    append(static_cast<std::uint32_t>(payload.size()));
    append(std::to_underlying(type));
    bytes += payload;
    return send(file.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
           static_cast<ssize_t>(bytes.size());
}

struct Header {
    std::uint32_t size = 0;
    std::uint32_t type = 0;
};

/// `nullopt` if the bytes are not the start of a message.
std::optional<Header> header(std::string_view bytes) {
    if (bytes.size() < headerSize || !bytes.starts_with(magic)) return {};
    Header found;
    std::memcpy(&found.size, bytes.data() + magic.size(), sizeof(found.size));
    std::memcpy(&found.type, bytes.data() + magic.size() + sizeof(found.size), sizeof(found.type));
    return found.size <= longestPayload ? std::optional(found) : std::nullopt;
}

bool receive(const FileDescriptor& file, std::string& bytes, std::size_t size) {
    bytes.resize(size);
    for (std::size_t done = 0; done < size;) {
        const auto count = recv(file.get(), bytes.data() + done, size - done, 0);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

std::optional<json> receiveMessage(const FileDescriptor& file, SwayConnection::Message type) {
    std::string bytes;
    if (!receive(file, bytes, headerSize)) return {};
    const auto found = header(bytes);
    if (!found || found->type != std::to_underlying(type) || !receive(file, bytes, found->size))
        return {};
    auto answer = json::parse(bytes, nullptr, false);
    return answer.is_discarded() ? std::nullopt : std::optional(std::move(answer));
}

}  // namespace

std::unique_ptr<SwayConnection> SwayConnection::open() {
    auto events = connected();
    if (!events.isOpen()) return nullptr;
    auto connection = std::unique_ptr<SwayConnection>(new SwayConnection(std::move(events)));
    return connection->listen() ? std::move(connection) : nullptr;
}

SwayConnection::SwayConnection(FileDescriptor events) : events_(std::move(events)) {}

SwayConnection::~SwayConnection() = default;

bool SwayConnection::listen() {
    if (!sendMessage(events_, Message::subscribe, wantedEvents)) return false;
    const auto answer = receiveMessage(events_, Message::subscribe);
    if (!answer || !answer->is_object() || !answer->value("success", false)) return false;
    notifier_ = std::make_unique<QSocketNotifier>(events_.get(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { readEvents(); });
    return true;
}

std::optional<json> SwayConnection::ask(Message message, std::string_view payload) {
    if (!requests_) {
        auto file = connected();
        if (!file.isOpen()) return {};
        requests_.emplace(std::move(file));
    }
    std::optional<json> answer;
    if (sendMessage(*requests_, message, payload)) answer = receiveMessage(*requests_, message);
    if (!answer) requests_.reset();
    return answer;
}

bool SwayConnection::run(std::string_view commands) {
    const auto answer = ask(Message::command, commands);
    if (!answer || !answer->is_array()) return false;
    for (const auto& result : *answer) {
        if (!result.is_object() || !result.value("success", false)) return false;
    }
    return true;
}

void SwayConnection::readEvents() {
    char block[16384];
    ssize_t count = 0;
    while ((count = recv(events_.get(), block, sizeof(block), MSG_DONTWAIT)) > 0)
        received_.append(block, static_cast<std::size_t>(count));
    if (count == 0) notifier_->setEnabled(false);  // sway has ended
    while (received_.size() >= headerSize) {
        const auto found = header(received_);
        if (!found) {
            notifier_->setEnabled(false);
            return;
        }
        if (received_.size() < headerSize + found->size) return;
        const auto event = json::parse(received_.substr(headerSize, found->size), nullptr, false);
        received_.erase(0, headerSize + found->size);
        const auto kind = found->type & ~eventBit;
        if (kind >= eventNames.size() || !event.is_object()) continue;
        observers_.forEach([&](const Event& handler) { handler(eventNames[kind], event); });
    }
}

}  // namespace OrvelSystem
