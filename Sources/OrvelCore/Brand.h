#pragma once

#include <cstdint>
#include <string_view>

/// The product's constants. All are null-terminated. Those defined elsewhere are chosen by
/// whoever ships the product, when the build is configured.
namespace OrvelCore::Brand {

inline constexpr std::string_view name = "Karvo";
inline constexpr std::string_view slug = "karvo";
inline constexpr std::string_view urlScheme = "karvo";
inline constexpr std::string_view bundleIdentifier = "com.brindlewick.karvo";
inline constexpr std::string_view executable = "Karvo";
inline constexpr std::string_view guardExecutable = "KarvoGuard";
inline constexpr std::string_view guardLabel = "com.brindlewick.karvo.guard";

extern const std::string_view siteURL;
extern const std::string_view appcastURL;
/// The one host that packages of updates may come from. It serves the feed as well.
extern const std::string_view updateHost;
extern const std::string_view supportEmail;
/// Base64 of the Ed25519 public key that updates are verified with; one that is no key refuses
/// every update.
extern const std::string_view updateKeyBase64;
/// The version that users see, such as "1.4".
extern const std::string_view version;
/// Updates are compared by it; above 0.
extern const std::int64_t build;

}  // namespace OrvelCore::Brand
