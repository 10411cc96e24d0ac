#pragma once

#include <filesystem>

#include "OrvelUpdates/UpdateTransport.h"

namespace OrvelUpdates {

/// HTTPS only, without cookies and without a cache. Each request is independent.
class URLSessionUpdateTransport final : public UpdateTransport {
  public:
    struct Options {
        /// In seconds.
        int connectTimeout = 30;
        /// In seconds. If the server sends nothing for this long, the request fails.
        int stallTimeout = 60;
        /// A PEM file with the certificates of the trusted authorities; empty for those of the
        /// system.
        std::filesystem::path authorities;
    };

    URLSessionUpdateTransport();
    explicit URLSessionUpdateTransport(Options options);

    std::expected<UpdateReply, UpdateTransportError> fetch(const UpdateRequest& request) override;

  private:
    Options options_;
};

}  // namespace OrvelUpdates
