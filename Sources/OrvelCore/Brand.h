#pragma once

#include <cstdint>
#include <string_view>

/// The product's constants. All are null-terminated. Those without a value here are set by the
/// distributor when the build is configured.
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
/// The only host from which update packages may come. It also serves the feed.
extern const std::string_view updateHost;
extern const std::string_view supportEmail;
/// The Ed25519 public key that verifies updates, in Base64. If it is not a valid key, every update
/// is refused.
extern const std::string_view updateKeyBase64;
/// The version that users see, such as "1.4".
extern const std::string_view version;
/// The number by which updates are compared; greater than 0.
extern const std::int64_t build;

}  // namespace OrvelCore::Brand
