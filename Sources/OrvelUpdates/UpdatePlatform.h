#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// What of the updater is the platform's.
namespace OrvelUpdates::UpdatePlatform {

/// What a package says of itself.
struct PackageIdentity {
    /// Of the program in it.
    std::string name;
    /// As users see it.
    std::string version;
    std::int64_t build = 0;
};

/// Nothing for what is no package of this system, or says no build number. The package's own tools
/// read it, so it must have been verified. Blocks; any thread.
std::optional<PackageIdentity> packageIdentity(std::string_view archive);

/// With its dot: what makes the system take a file for one of its packages.
std::string_view packageExtension();

/// Has the system's package installer open the package; where there is none for it, its folder is
/// shown, so that the user can take it from there. Returns before that has happened.
void openPackage(const std::filesystem::path& package);

/// Seconds of a clock that goes on while the machine sleeps, and that nobody can set.
double continuousClock();

}  // namespace OrvelUpdates::UpdatePlatform
