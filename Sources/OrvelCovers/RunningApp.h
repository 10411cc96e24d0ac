#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace OrvelSystem {
struct RunningApplication;
}

namespace OrvelCovers {

/// An app that runs in the session.
struct RunningApp {
    std::int64_t pid = 0;
    /// `nullopt` for an app that could not be recognised after a restart.
    std::optional<std::string> bundleID;
    /// The name that users know; never empty.
    std::string name;
    bool operator==(const RunningApp&) const = default;

    /// An app without a name gets its identifier as the name, or "App" if it has no identifier.
    static RunningApp of(const OrvelSystem::RunningApplication& app);
    /// The apps that have windows of their own and an identifier.
    static std::vector<RunningApp> regular();
    /// The name of an installed app, or the identifier if no such app is installed.
    static std::string nameForBundleID(std::string_view bundleID);
};

}  // namespace OrvelCovers
