#pragma once

#include <filesystem>
#include <string_view>

/// What of the updater is the platform's.
namespace OrvelUpdates::UpdatePlatform {

/// With its dot: what makes the system take a file for one of its packages.
std::string_view packageExtension();

/// Has the system's package installer open the package; where there is none for it, its folder is
/// shown, so that the user can take it from there. Returns before that has happened.
void openPackage(const std::filesystem::path& package);

/// Seconds of a clock that goes on while the machine sleeps, and that nobody can set.
double continuousClock();

}  // namespace OrvelUpdates::UpdatePlatform
