#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelUpdates/URL.h"

namespace OrvelUpdates {

/// One version that the update feed offers. Nothing in it can be trusted: the feed is not signed.
struct AppcastItem {
    /// Empty when the item has none.
    std::string title;
    /// The order of versions.
    std::int64_t build = 0;
    /// What users see; never empty in an item of a feed.
    std::string shortVersion;
    URL url;
    /// Base64 of the package's Ed25519 signature, empty when there is none.
    std::string edSignature;
    /// Size of the package in bytes; 0 and less for unknown.
    std::int64_t length = 0;
    /// Told, but not acted on.
    std::optional<std::string> minimumSystemVersion;

    bool operator==(const AppcastItem&) const = default;
};

enum class AppcastError {
    /// Not XML, XML in an encoding that expat does not know, or XML that declares entities, which
    /// no
    /// feed needs and which can be made to grow without end.
    malformedFeed,
    /// XML without a single item that has a build number and a URL.
    noItems,
};

/// Reads feeds in the form that Sparkle gave to RSS.
struct AppcastParser {
    /// In the order of the feed. An item without a build number or a usable URL is left out.
    static std::expected<std::vector<AppcastItem>, AppcastError> parse(std::string_view data);
};

}  // namespace OrvelUpdates
