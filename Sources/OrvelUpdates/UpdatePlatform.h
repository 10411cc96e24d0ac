#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// The platform-specific parts of the updater.
namespace OrvelUpdates::UpdatePlatform {

/// The identity that a package states.
struct PackageIdentity {
    /// The name of the program in the package.
    std::string name;
    /// The version that users see.
    std::string version;
    /// Greater than 0.
    std::int64_t build = 0;
};

/// `nullopt` if the archive is not a package of this system or states no build number. The archive
/// is read by the package system's own tools, so it must have been verified. Blocks; any thread.
std::optional<PackageIdentity> packageIdentity(std::string_view archive);

/// With its dot. The system recognises its packages by this extension.
std::string_view packageExtension();

/// Opens the package with the system's installer. If there is no installer, shows the package's
/// folder to the user. Returns without waiting for either.
void openPackage(const std::filesystem::path& package);

/// Seconds of a clock that continues to count while the machine is suspended, and that cannot be
/// set.
double continuousClock();

}  // namespace OrvelUpdates::UpdatePlatform
