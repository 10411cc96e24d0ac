#include "OrvelUpdates/UpdateChecker.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "OrvelCore/AppFolders.h"
#include "OrvelUpdates/StagingFolder.h"

namespace OrvelUpdates {

namespace {

namespace Brand = OrvelCore::Brand;

// No server needs as many; the limit ends a redirect loop.
constexpr int mostRedirects = 10;

UpdateFailed couldNotCheck() {
    return {fmt::format("{} could not check for updates. Try again later.", Brand::name)};
}

UpdateFailed untrusted() {
    return {fmt::format("The update came from somewhere {} does not trust.", Brand::name)};
}

UpdateFailed unverified() {
    return {fmt::format("The update did not verify, so {} did not keep it.", Brand::name)};
}

/// Returns the first of several items with the same build, and null if no item is newer.
const AppcastItem* newestAbove(std::int64_t build, const std::vector<AppcastItem>& items) {
    const AppcastItem* newest = nullptr;
    for (const auto& item : items)
        if (item.build > (newest != nullptr ? newest->build : build)) newest = &item;
    return newest;
}

/// The feed's length is used as a limit only if it does not exceed the limit for all packages.
bool lengthLimits(const AppcastItem& item) {
    return item.length > 0 &&
           static_cast<std::uint64_t>(item.length) <= UpdateChecker::largestPackage;
}

std::size_t limitFor(const AppcastItem& item) {
    return lengthLimits(item) ? static_cast<std::size_t>(item.length)
                              : UpdateChecker::largestPackage;
}

/// Reports only steps of a download that the user can distinguish.
std::function<void(std::size_t)> steps(std::int64_t total,
                                       const UpdateChecker::OnProgress& onProgress) {
    const std::int64_t step = total > 0 ? std::max<std::int64_t>(total / 100, 1) : 1'000'000;
    return [=, last = std::int64_t{-1}](std::size_t bytes) mutable {
        const auto received = static_cast<std::int64_t>(bytes);
        if (std::exchange(last, received / step) != received / step)
            onProgress({.received = received, .total = total});
    };
}

/// The name comes from the feed, which is not signed: it must not refer to another folder.
bool isFileName(std::string_view name) {
    return std::ranges::none_of(
        name, [](char c) { return c == '/' || static_cast<unsigned char>(c) < ' ' || c == 0x7F; });
}

}  // namespace

std::filesystem::path UpdateChecker::liveStagingDirectory() {
    return OrvelCore::dataFolder() / "Updates";
}

UpdateResult UpdateChecker::check(const OrvelSystem::StopToken& stop,
                                  const OnProgress& onProgress) const {
    auto result = find({stop, onProgress, clock() + timeout});
    if (std::holds_alternative<UpdateFailed>(result) && stop.isStopRequested())
        return UpdateCancelled{};
    return result;
}

UpdateResult UpdateChecker::find(const Run& run) const {
    const auto feed = fetch({.url = feedURL, .limit = largestFeed}, From::anywhere, run);
    if (!feed) return couldNotCheck();
    const auto items = AppcastParser::parse(*feed);
    if (!items) return couldNotCheck();
    const AppcastItem* const newest = newestAbove(currentBuild, *items);
    if (newest == nullptr) return UpToDate{};
    return fetchPackage(*newest, run);
}

UpdateResult UpdateChecker::fetchPackage(const AppcastItem& item, const Run& run) const {
    const auto archive =
        fetch({.url = item.url,
               .limit = limitFor(item),
               .received = steps(lengthLimits(item) ? item.length : 0, run.onProgress)},
              From::allowedHost, run);
    if (!archive) {
        switch (archive.error()) {
            case FetchFailure::unavailable:
                return couldNotCheck();
            case FetchFailure::untrusted:
                return untrusted();
            case FetchFailure::tooLarge:
                // A package that is longer than the feed states is the wrong one, whatever the rest
                // contains.
                return lengthLimits(item) ? unverified() : couldNotCheck();
        }
    }
    if (!AppcastSignature::verify(*archive, item, publicKey)) return unverified();
    if (!isWhatIsOffered(*archive, item)) return unverified();
    return stage(item, *archive);
}

bool UpdateChecker::isWhatIsOffered(std::string_view archive, const AppcastItem& item) const {
    const auto identity = identify(archive);
    if (!identity || identity->name != Brand::slug) return false;
    // An old package with a valid signature must not pass for a new one.
    if (identity->build != item.build || identity->build <= currentBuild) return false;
    // An item may omit the version; its `shortVersion` is then its build number.
    return item.shortVersion == identity->version ||
           item.shortVersion == std::to_string(identity->build);
}

UpdateResult UpdateChecker::stage(const AppcastItem& item, std::string_view archive) const {
    const auto name = fmt::format("{}-{}{}", Brand::name, item.shortVersion, packageExtension);
    if (!isFileName(name)) return couldNotCheck();
    const auto folder = StagingFolder::open(stagingDirectory, StagingFolder::Missing::isMade);
    if (!folder || !folder->write(name, archive)) return couldNotCheck();
    return UpdateReady{item, stagingDirectory / name};
}

bool UpdateChecker::trusts(const URL& url) const {
    return url.scheme() == "https" && url.host() == allowedHost;
}

std::expected<std::string, UpdateChecker::FetchFailure> UpdateChecker::fetch(UpdateRequest request,
                                                                             From from,
                                                                             const Run& run) const {
    request.stop = run.stop;
    for (int redirects = 0; redirects <= mostRedirects; ++redirects) {
        // Check each redirect target again, before a request is sent to it.
        if (from == From::allowedHost && !trusts(request.url))
            return std::unexpected(FetchFailure::untrusted);
        request.timeout = run.deadline - clock();
        if (request.timeout <= 0) break;
        auto reply = transport->fetch(request);
        if (!reply)
            return std::unexpected(reply.error() == UpdateTransportError::tooLarge
                                       ? FetchFailure::tooLarge
                                       : FetchFailure::unavailable);
        if (!reply->redirect) return std::move(reply->bytes);
        request.url = std::move(*reply->redirect);
    }
    return std::unexpected(FetchFailure::unavailable);
}

std::optional<std::string> UpdateChecker::stagedPackageIfIntact(
    const std::filesystem::path& package, const AppcastItem& item,
    const std::optional<PublicKey>& publicKey) {
    const auto folder =
        StagingFolder::open(package.parent_path(), StagingFolder::Missing::isAnError);
    if (!folder) return {};
    auto archive = folder->read(package.filename(), limitFor(item));
    if (!archive || !AppcastSignature::verify(*archive, item, publicKey)) return {};
    return std::move(*archive);
}

}  // namespace OrvelUpdates
