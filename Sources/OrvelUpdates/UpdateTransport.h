#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <optional>
#include <string>

#include "OrvelSystem/StopToken.h"
#include "OrvelUpdates/URL.h"

namespace OrvelUpdates {

struct UpdateRequest {
    URL url;
    /// Bytes that the answer may have.
    std::size_t limit = 0;
    /// Seconds that the request may take as a whole, however much of the answer has come by then.
    double patience = 0;
    OrvelSystem::StopToken stop;
    /// Told of the bytes that have come so far, on the calling thread. Those of an answer that is
    /// no success do not count.
    std::function<void(std::size_t)> received = [](std::size_t) {};
};

/// What a server answers to one request.
struct UpdateReply {
    std::string bytes;
    /// Where the server says that the bytes are; absolute. `bytes` then mean nothing.
    std::optional<URL> redirect;
};

enum class UpdateTransportError {
    /// No connection, no answer in time, an answer cut short, a status that is no success.
    unavailable,
    /// There were more bytes than the limit.
    tooLarge,
};

/// The network as an update check sees it.
class UpdateTransport {
  public:
    UpdateTransport() = default;
    UpdateTransport(const UpdateTransport&) = delete;
    UpdateTransport& operator=(const UpdateTransport&) = delete;
    virtual ~UpdateTransport() = default;

    /// The bytes at the request's URL. Redirects are told, not followed, as it is for the caller to
    /// say whom it trusts. Blocks until the end or until `stop` is asked for, which counts as
    /// unavailable. Any thread, and several at once.
    virtual std::expected<UpdateReply, UpdateTransportError> fetch(
        const UpdateRequest& request) = 0;
};

}  // namespace OrvelUpdates
