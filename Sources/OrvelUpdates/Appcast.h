#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelUpdates/URL.h"

namespace OrvelUpdates {

/// A version that the update feed offers. Do not trust any field: the feed is not signed.
struct AppcastItem {
    /// Empty if the item has no title.
    std::string title;
    /// The number that orders versions.
    std::int64_t build = 0;
    /// The version that users see; never empty in a parsed item.
    std::string shortVersion;
    URL url;
    /// The package's Ed25519 signature in Base64; empty if there is none.
    std::string edSignature;
    /// The size of the package in bytes; 0 or less if unknown.
    std::int64_t length = 0;
    /// Informational only; nothing checks it.
    std::optional<std::string> minimumSystemVersion;

    bool operator==(const AppcastItem&) const = default;
};

enum class AppcastError {
    /// The feed is not XML, has an encoding that expat does not know, or declares entities. No feed
    /// needs entities, and they can expand without limit.
    malformedFeed,
    /// The feed has no item with a build number and a URL.
    noItems,
};

/// Parses feeds in Sparkle's extension of RSS.
struct AppcastParser {
    /// Returns the items in the order of the feed. Items without a build number or a usable URL are
    /// omitted.
    static std::expected<std::vector<AppcastItem>, AppcastError> parse(std::string_view data);
};

}  // namespace OrvelUpdates
