#pragma once

#include <filesystem>

#include "OrvelUpdates/UpdateTransport.h"

namespace OrvelUpdates {

/// HTTPS and nothing else, without cookies and without a cache. Each request stands alone.
class URLSessionUpdateTransport final : public UpdateTransport {
  public:
    struct Options {
        /// Seconds.
        int connectTimeout = 30;
        /// Seconds without a byte after which a server counts as gone.
        int stallTimeout = 60;
        /// Certificates of the authorities to trust, as PEM; empty for those of the system.
        std::filesystem::path authorities;
    };

    URLSessionUpdateTransport();
    explicit URLSessionUpdateTransport(Options options);

    std::expected<UpdateReply, UpdateTransportError> fetch(const UpdateRequest& request) override;

  private:
    Options options_;
};

}  // namespace OrvelUpdates
