#pragma once

#include <memory>
#include <string>

#include "OrvelSystem/Picture.h"

namespace OrvelSystem {

/// The account that runs this process.
struct AccountIdentity {
    /// The login name. On Linux, the user ID in decimal if the account database has no entry.
    static std::string userName();
    /// The full name, or the login name if the account has no full name.
    static std::string fullName();
    /// The account's picture, with at most `pictureSize` pixels in each direction. Null if there is
    /// none or it cannot be read.
    static std::shared_ptr<const Picture> picture();

    /// In pixels.
    static constexpr int pictureSize = 512;
};

}  // namespace OrvelSystem
