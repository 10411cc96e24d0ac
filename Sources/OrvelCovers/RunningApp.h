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
    /// Nothing for one that cannot be told again when it is started anew.
    std::optional<std::string> bundleID;
    /// As users know it; never empty.
    std::string name;
    bool operator==(const RunningApp&) const = default;

    /// One without a name is called by its identifier, and "App" where it has none.
    static RunningApp of(const OrvelSystem::RunningApplication& app);
    /// The apps with windows of their own that have an identifier.
    static std::vector<RunningApp> regular();
    /// The name of an installed app, or the identifier itself where there is none.
    static std::string nameForBundleID(std::string_view bundleID);
};

}  // namespace OrvelCovers
