#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "OrvelCore/Brand.h"
#include "OrvelUpdates/Appcast.h"
#include "OrvelUpdates/AppcastSignature.h"
#include "OrvelUpdates/UpdatePlatform.h"
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
/// The user did not want to wait for the result.
struct UpdateCancelled {
    bool operator==(const UpdateCancelled&) const = default;
};
using UpdateResult = std::variant<UpdateReady, UpdateFailed, UpToDate, UpdateCancelled>;

/// How much of a package has come.
struct DownloadProgress {
    /// Bytes.
    std::int64_t received = 0;
    /// Bytes; 0 for unknown.
    std::int64_t total = 0;
    bool operator==(const DownloadProgress&) const = default;
};

/// One whole check: fetches the feed, picks the newest version above the running one, downloads it
/// from the one trusted host, verifies it, and only then writes it to disk. The feed is not signed,
/// so the package has to say itself that it is the version and the build which the feed offers.
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
    /// Reads a verified package.
    std::function<std::optional<UpdatePlatform::PackageIdentity>(std::string_view archive)>
        identify = UpdatePlatform::packageIdentity;
    /// Seconds that a check may take as a whole, with all its requests and redirects, so that no
    /// server stretches it.
    double patience = 3600;
    /// Seconds of any steady clock.
    std::function<double()> clock = UpdatePlatform::continuousClock;

    /// "Updates" in the folder where the program keeps its state.
    static std::filesystem::path liveStagingDirectory();

    /// Told on the thread of the check, each time that the whole percentage grows or, with an
    /// unknown total, another million bytes have come.
    using OnProgress = std::function<void(const DownloadProgress&)>;

    /// Blocks until the end, or until soon after `stop` was asked for. Any thread, and several at
    /// once.
    UpdateResult check(
        const OrvelSystem::StopToken& stop = {},
        const OnProgress& onProgress = [](const DownloadProgress&) {}) const;

    /// The bytes of a staged package if they are still what was staged; nothing otherwise, and for
    /// a file that cannot be read or is reached by a link. What is to be opened are these bytes:
    /// the file may have become another one by then.
    static std::optional<std::string> stagedPackageIfIntact(
        const std::filesystem::path& package, const AppcastItem& item,
        const std::optional<PublicKey>& publicKey);

  private:
    enum class From { anywhere, allowedHost };
    enum class FetchFailure { unavailable, tooLarge, untrusted };
    /// What all requests of one check have in common.
    struct Run {
        const OrvelSystem::StopToken& stop;
        const OnProgress& onProgress;
        /// By `clock`.
        double deadline;
    };

    bool trusts(const URL& url) const;
    std::expected<std::string, FetchFailure> fetch(UpdateRequest request, From from,
                                                   const Run& run) const;
    UpdateResult find(const Run& run) const;
    UpdateResult fetchPackage(const AppcastItem& item, const Run& run) const;
    bool isWhatIsOffered(std::string_view archive, const AppcastItem& item) const;
    UpdateResult stage(const AppcastItem& item, std::string_view archive) const;
};

}  // namespace OrvelUpdates
