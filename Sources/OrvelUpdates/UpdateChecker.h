#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <variant>

#include "OrvelCore/Brand.h"
#include "OrvelUpdates/Appcast.h"
#include "OrvelUpdates/AppcastSignature.h"
#include "OrvelUpdates/UpdateTransport.h"

namespace OrvelUpdates {

/// A verified package lies on disk.
struct UpdateReady {
    AppcastItem item;
    std::filesystem::path package;
    bool operator==(const UpdateReady&) const = default;
};
struct UpdateFailed {
    /// The sentence to show.
    std::string text;
    bool operator==(const UpdateFailed&) const = default;
};
struct UpToDate {
    bool operator==(const UpToDate&) const = default;
};
using UpdateResult = std::variant<UpdateReady, UpdateFailed, UpToDate>;

/// One whole check: fetches the feed, picks the newest version above the running one, downloads it
/// from the one trusted host, verifies it, and only then writes it to disk.
struct UpdateChecker {
    /// Bytes. Whoever holds the feed's server shall not be able to fill the memory: a feed has some
    /// hundred bytes per version, and the package a few million.
    static constexpr std::size_t largestFeed = std::size_t{16} << 20;
    static constexpr std::size_t largestPackage = std::size_t{512} << 20;

    /// Not subject to the rule for packages: it is the program's own.
    URL feedURL;
    std::int64_t currentBuild = 0;
    std::shared_ptr<UpdateTransport> transport;
    /// Made when it is missing.
    std::filesystem::path stagingDirectory;
    /// Without one no package verifies.
    std::optional<PublicKey> publicKey;
    /// The one host that packages may come from, compared as plain text.
    std::string allowedHost = std::string(OrvelCore::Brand::updateHost);
    /// Of the staged file, with its dot: what the system's installer goes by.
    std::string packageExtension = ".pkg";

    /// "Updates" in the folder where the program keeps its state.
    static std::filesystem::path liveStagingDirectory();

    /// Blocks until the end, or until soon after `stop` was asked for, which counts as a failure.
    /// Any thread, and several at once.
    UpdateResult check(const std::stop_token& stop = {}) const;

    /// Whether a staged package is still what it was when it was staged. False for a file that
    /// cannot be read.
    static bool stagedPackageIsIntact(const std::filesystem::path& package, const AppcastItem& item,
                                      const std::optional<PublicKey>& publicKey);

  private:
    enum class From { anywhere, allowedHost };
    enum class FetchFailure { unavailable, tooLarge, untrusted };

    bool trusts(const URL& url) const;
    std::expected<std::string, FetchFailure> fetch(URL url, From from, std::size_t limit,
                                                   const std::stop_token& stop) const;
    UpdateResult fetchPackage(const AppcastItem& item, const std::stop_token& stop) const;
    UpdateResult stage(const AppcastItem& item, std::string_view archive) const;
};

}  // namespace OrvelUpdates
