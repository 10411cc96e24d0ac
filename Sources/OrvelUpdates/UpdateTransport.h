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
    /// The maximum size of the response in bytes.
    std::size_t limit = 0;
    /// The time limit in seconds for the whole request, even if data is still arriving.
    double timeout = 0;
    OrvelSystem::StopToken stop;
    /// Called on the calling thread with the number of bytes received so far. The body of an
    /// unsuccessful response does not count.
    std::function<void(std::size_t)> received = [](std::size_t) {};
};

/// The response to one request.
struct UpdateReply {
    std::string bytes;
    /// The absolute URL to which the server redirects; `bytes` is then meaningless.
    std::optional<URL> redirect;
};

enum class UpdateTransportError {
    /// No connection, no response in time, a truncated response, or an unsuccessful status.
    unavailable,
    /// The response was larger than the limit.
    tooLarge,
};

/// The network access of an update check.
class UpdateTransport {
  public:
    UpdateTransport() = default;
    UpdateTransport(const UpdateTransport&) = delete;
    UpdateTransport& operator=(const UpdateTransport&) = delete;
    virtual ~UpdateTransport() = default;

    /// Returns the bytes at the request's URL. Redirects are reported, not followed, since the
    /// caller decides which hosts it trusts. Blocks until the end, or until a stop is requested,
    /// which counts as `unavailable`. Any thread; several requests may run at once.
    virtual std::expected<UpdateReply, UpdateTransportError> fetch(
        const UpdateRequest& request) = 0;
};

}  // namespace OrvelUpdates
