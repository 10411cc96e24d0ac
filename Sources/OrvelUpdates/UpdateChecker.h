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

/// A verified package is on disk.
struct UpdateReady {
    AppcastItem item;
    std::filesystem::path package;
    bool operator==(const UpdateReady&) const = default;
};
struct UpdateFailed {
    /// The sentence to show to the user.
    std::string text;
    bool operator==(const UpdateFailed&) const = default;
};
struct UpToDate {
    bool operator==(const UpToDate&) const = default;
};
/// The user cancelled the check.
struct UpdateCancelled {
    bool operator==(const UpdateCancelled&) const = default;
};
using UpdateResult = std::variant<UpdateReady, UpdateFailed, UpToDate, UpdateCancelled>;

/// The progress of a package's download.
struct DownloadProgress {
    /// In bytes.
    std::int64_t received = 0;
    /// In bytes; 0 if unknown.
    std::int64_t total = 0;
    bool operator==(const DownloadProgress&) const = default;
};

/// A complete check: fetches the feed, selects the newest version above the running one, downloads
/// it from the one trusted host, verifies it, and only then writes it to disk. The feed is not
/// signed, so the package itself must state the version and the build that the feed offers.
struct UpdateChecker {
    /// In bytes. An attacker who controls the feed's server must not be able to exhaust the memory.
    /// A feed has some hundred bytes per version, and the package a few million bytes.
    static constexpr std::size_t largestFeed = std::size_t{16} << 20;
    static constexpr std::size_t largestPackage = std::size_t{512} << 20;

    /// This is the program's own URL, so `allowedHost` does not apply to it.
    URL feedURL;
    /// The build number of the running program; only greater ones are updates.
    std::int64_t currentBuild = 0;
    std::shared_ptr<UpdateTransport> transport;
    /// Created if it is missing.
    std::filesystem::path stagingDirectory;
    /// If it is `nullopt`, no package verifies.
    std::optional<PublicKey> publicKey;
    /// The only host from which packages may come, compared as plain text.
    std::string allowedHost = std::string(OrvelCore::Brand::updateHost);
    /// The extension of the staged file, with its dot. The system recognises packages by it.
    std::string packageExtension = ".pkg";
    /// Reads the identity of a verified package.
    std::function<std::optional<UpdatePlatform::PackageIdentity>(std::string_view archive)>
        identify = UpdatePlatform::packageIdentity;
    /// The time limit in seconds for a whole check, including all requests and redirects, so that
    /// no server can prolong it.
    double timeout = 3600;
    /// Returns the seconds of a steady clock.
    std::function<double()> clock = UpdatePlatform::continuousClock;

    /// "Updates" in the data folder.
    static std::filesystem::path liveStagingDirectory();

    /// Called on the thread of the check each time the whole percentage grows or, if the total is
    /// unknown, after each further million bytes.
    using OnProgress = std::function<void(const DownloadProgress&)>;

    /// Blocks until the end, or until soon after a stop is requested through `stop`. Any thread;
    /// several checks may run at once.
    UpdateResult check(
        const OrvelSystem::StopToken& stop = {},
        const OnProgress& onProgress = [](const DownloadProgress&) {}) const;

    /// Returns the contents of a staged package if they still verify for `item`; `nullopt`
    /// otherwise, including for a file that cannot be read or is a symbolic link. Install the
    /// returned bytes, not the file, which may have been replaced since.
    static std::optional<std::string> stagedPackageIfIntact(
        const std::filesystem::path& package, const AppcastItem& item,
        const std::optional<PublicKey>& publicKey);

  private:
    enum class From { anywhere, allowedHost };
    enum class FetchFailure { unavailable, tooLarge, untrusted };
    /// The data that all requests of one check share.
    struct Run {
        const OrvelSystem::StopToken& stop;
        const OnProgress& onProgress;
        /// In seconds of `clock`.
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
