#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "OrvelSystem/Picture.h"

namespace OrvelSystem {

/// The account that this process runs as.
struct AccountIdentity {
    /// The short name that the account logs in with; the number of the user when it has none.
    static std::string userName();
    /// The short name when the account has no full one.
    static std::string fullName();
    /// At most `pictureSize` in each direction; null when the account has none that can be read.
    static std::shared_ptr<const Picture> picture();

    /// Pixels.
    static constexpr int pictureSize = 512;

    /// The full name in the comment field of the account database; empty when there is none.
    static std::string fullName(std::string_view comment, std::string_view userName);
};

}  // namespace OrvelSystem
