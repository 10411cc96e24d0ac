#include "OrvelUpdates/UpdateChecker.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "OrvelCore/AppFolders.h"
#include "OrvelCore/AtomicFile.h"

namespace OrvelUpdates {

namespace {

namespace Brand = OrvelCore::Brand;

// More than any server needs; a loop of them must end.
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

/// Among equal builds the first.
const AppcastItem* newestAbove(std::int64_t build, const std::vector<AppcastItem>& items) {
    const AppcastItem* newest = nullptr;
    for (const auto& item : items)
        if (item.build > (newest != nullptr ? newest->build : build)) newest = &item;
    return newest;
}

/// The feed's length counts for a limit only as far as any package may go.
bool lengthLimits(const AppcastItem& item) {
    return item.length > 0 &&
           static_cast<std::uint64_t>(item.length) <= UpdateChecker::largestPackage;
}

std::size_t limitFor(const AppcastItem& item) {
    return lengthLimits(item) ? static_cast<std::size_t>(item.length)
                              : UpdateChecker::largestPackage;
}

/// The name is the feed's, which is not signed: it must not lead out of its folder.
bool isFileName(std::string_view name) {
    return std::ranges::none_of(
        name, [](char c) { return c == '/' || static_cast<unsigned char>(c) < ' ' || c == 0x7F; });
}

}  // namespace

std::filesystem::path UpdateChecker::liveStagingDirectory() {
    return OrvelCore::dataFolder() / "Updates";
}

UpdateResult UpdateChecker::check(const std::stop_token& stop) const {
    const auto feed = fetch(feedURL, From::anywhere, largestFeed, stop);
    if (!feed) return couldNotCheck();
    const auto items = AppcastParser::parse(*feed);
    if (!items) return couldNotCheck();
    const AppcastItem* const newest = newestAbove(currentBuild, *items);
    if (newest == nullptr) return UpToDate{};
    return fetchPackage(*newest, stop);
}

UpdateResult UpdateChecker::fetchPackage(const AppcastItem& item,
                                         const std::stop_token& stop) const {
    const auto archive = fetch(item.url, From::allowedHost, limitFor(item), stop);
    if (!archive) {
        switch (archive.error()) {
            case FetchFailure::unavailable:
                return couldNotCheck();
            case FetchFailure::untrusted:
                return untrusted();
            case FetchFailure::tooLarge:
                // Longer than the feed says is the wrong package, however the rest of it reads.
                return lengthLimits(item) ? unverified() : couldNotCheck();
        }
    }
    if (!AppcastSignature::verify(*archive, item, publicKey)) return unverified();
    return stage(item, *archive);
}

UpdateResult UpdateChecker::stage(const AppcastItem& item, std::string_view archive) const {
    const auto name = fmt::format("{}-{}{}", Brand::name, item.shortVersion, packageExtension);
    if (!isFileName(name)) return couldNotCheck();
    const auto package = stagingDirectory / name;
    if (!OrvelCore::writeAtomically(package, archive)) return couldNotCheck();
    return UpdateReady{item, package};
}

bool UpdateChecker::trusts(const URL& url) const {
    return url.scheme() == "https" && url.host() == allowedHost;
}

std::expected<std::string, UpdateChecker::FetchFailure> UpdateChecker::fetch(
    URL url, From from, std::size_t limit, const std::stop_token& stop) const {
    for (int redirects = 0; redirects <= mostRedirects; ++redirects) {
        // Anew for each place that a server points to, and before anything is asked of it.
        if (from == From::allowedHost && !trusts(url))
            return std::unexpected(FetchFailure::untrusted);
        auto reply = transport->fetch(url, limit, stop);
        if (!reply)
            return std::unexpected(reply.error() == UpdateTransportError::tooLarge
                                       ? FetchFailure::tooLarge
                                       : FetchFailure::unavailable);
        if (!reply->redirect) return std::move(reply->bytes);
        url = std::move(*reply->redirect);
    }
    return std::unexpected(FetchFailure::unavailable);
}

bool UpdateChecker::stagedPackageIsIntact(const std::filesystem::path& package,
                                          const AppcastItem& item,
                                          const std::optional<PublicKey>& publicKey) {
    const auto archive = OrvelCore::readFile(package, limitFor(item));
    return archive && AppcastSignature::verify(*archive, item, publicKey);
}

}  // namespace OrvelUpdates
