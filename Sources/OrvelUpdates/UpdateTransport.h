#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <stop_token>
#include <string>

#include "OrvelUpdates/URL.h"

namespace OrvelUpdates {

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

    /// The bytes at a URL, at most `limit` of them. Redirects are told, not followed, as it is for
    /// the caller to say whom it trusts. Blocks until the end or until `stop` is asked for, which
    /// counts as unavailable. Any thread, and several at once.
    virtual std::expected<UpdateReply, UpdateTransportError> fetch(const URL& url,
                                                                   std::size_t limit,
                                                                   std::stop_token stop) = 0;
};

}  // namespace OrvelUpdates
