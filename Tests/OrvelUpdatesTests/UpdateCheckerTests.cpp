#include "OrvelUpdates/UpdateChecker.h"

#include "Support/SignedPackages.h"
#include "Support/TemporaryFolder.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* untrusted = "The update came from somewhere Karvo does not trust.";
constexpr const char* unverified = "The update did not verify, so Karvo did not keep it.";
constexpr const char* couldNotCheck = "Karvo could not check for updates. Try again later.";

/// A network that offers the package at every address, so only the checker's rules can refuse it.
class StubTransport final : public UpdateTransport {
  public:
    std::string feedText;
    std::string package = "the package";
    std::map<std::string, std::string> redirects;
    int downloads = 0;
    /// Seconds that each answer takes, limited by the request's `timeout`.
    double slowness = 0;
    double now = 0;
    StopSource stop;
    bool isStopped = false;

    std::expected<UpdateReply, UpdateTransportError> fetch(const UpdateRequest& request) override {
        EXPECT_GT(request.timeout, 0);
        now += std::min(slowness, request.timeout);
        if (slowness > request.timeout) return std::unexpected(UpdateTransportError::unavailable);
        const auto url = request.url.text();
        if (url == "feed:") {
            if (feedText.size() > request.limit)
                return std::unexpected(UpdateTransportError::tooLarge);
            return UpdateReply{.bytes = feedText, .redirect = {}};
        }
        ++downloads;
        if (isStopped) {
            stop.requestStop();
            return std::unexpected(UpdateTransportError::unavailable);
        }
        if (const auto target = redirects.find(url); target != redirects.end())
            return UpdateReply{.bytes = package, .redirect = URL::parse(target->second)};
        if (package.size() > request.limit) return std::unexpected(UpdateTransportError::tooLarge);
        for (std::size_t size = 1; size <= package.size(); ++size) request.received(size);
        return UpdateReply{.bytes = package, .redirect = {}};
    }
};

class Checker : public testing::Test {
  protected:
    UpdateChecker checker() {
        return {.feedURL = *URL::parse("feed:"),
                .currentBuild = 1,
                .transport = network,
                .stagingDirectory = staging,
                .publicKey = key.publicHalf,
                .allowedHost = "host.example",
                .identify = [this](std::string_view) { return identity; },
                .clock = [this] { return network->now; }};
    }
    /// Returns "ready", "cancelled", or the message for the user.
    std::string check(const FeedItem& item) {
        network->feedText = feed(item.text()) + feedEnd;
        network->downloads = 0;
        progress.clear();
        const auto result =
            checker().check(network->stop.token(), [this](const DownloadProgress& made) {
                progress.emplace_back(made.received, made.total);
            });
        if (std::holds_alternative<UpdateReady>(result)) return "ready";
        EXPECT_FALSE(fs::exists(staging));
        if (std::holds_alternative<UpdateCancelled>(result)) return "cancelled";
        return std::get<UpdateFailed>(result).text;
    }

    const SigningKey key;
    std::shared_ptr<StubTransport> network = std::make_shared<StubTransport>();
    const FeedItem good{.url = "https://host.example/a",
                        .signature = key.signature(network->package),
                        .length = std::to_string(network->package.size())};
    std::optional<UpdatePlatform::PackageIdentity> identity{{"karvo", "1.1", 2}};
    std::vector<std::pair<std::int64_t, std::int64_t>> progress;
    std::string feedEnd;
    TemporaryFolder folder;
    fs::path staging = folder / "Karvo" / "Updates";
};

}  // namespace

TEST_F(Checker, ReadsNoFeedOfAnyLength) {
    feedEnd.assign(1'000'000, ' ');
    EXPECT_EQ(check(good), "ready");
    fs::remove_all(staging);
    feedEnd.assign(UpdateChecker::largestFeed, ' ');
    EXPECT_EQ(check(good), couldNotCheck);
}

TEST_F(Checker, AsksOnlyTheTrustedHostForThePackage) {
    network->redirects = {{"https://host.example/moved", "https://host.example/a"},
                          {"https://host.example/away", "https://evil.example/back"},
                          {"https://evil.example/back", "https://host.example/a"},
                          {"https://host.example/plain", "http://host.example/a"},
                          {"https://host.example/loop", "https://host.example/loop"}};
    const struct {
        const char* url;
        const char* result;
        int downloads;
    } cases[] = {
        {"https://host.example/a", "ready", 1},
        {"https://host.example/moved", "ready", 2},
        {"https://host.example/away", untrusted, 1},
        {"https://host.example/plain", untrusted, 1},
        {"https://host.example/loop", couldNotCheck, 11},
        {"http://host.example/a", untrusted, 0},
        {"HTTPS://host.example/a", untrusted, 0},
        {"https://Host.example/a", untrusted, 0},
        {"https://host.example./a", untrusted, 0},
        {"https://sub.host.example/a", untrusted, 0},
        {"https://host.example@evil/a", untrusted, 0},
        {"https://host%2Eexample/a", untrusted, 0},
        {"//host.example/a", untrusted, 0},
        {"https:/host.example/a", untrusted, 0},
        {"a.pkg", untrusted, 0},
    };
    for (const auto& [url, result, downloads] : cases) {
        auto item = good;
        item.url = url;
        EXPECT_EQ(check(item), result) << url;
        EXPECT_EQ(network->downloads, downloads) << url;
        fs::remove_all(staging);
    }
}

TEST_F(Checker, BelievesThePackageAndNotTheFeedAboutWhatItIs) {
    using Identity = UpdatePlatform::PackageIdentity;
    const struct {
        const char* what;
        std::optional<Identity> identity;
        const char* build;
        const char* version;
        const char* result;
    } cases[] = {
        {"as offered", Identity{"karvo", "1.1", 2}, "2", "1.1", "ready"},
        {"offered without a version", Identity{"karvo", "1.1", 2}, "2", "", "ready"},
        {"the running build", Identity{"karvo", "1.0", 1}, "9000", "1.0", unverified},
        {"an older build", Identity{"karvo", "0.9", 0}, "9000", "99.0", unverified},
        {"newer, but another build", Identity{"karvo", "1.1", 2}, "3", "1.1", unverified},
        {"another version", Identity{"karvo", "1.1", 2}, "2", "99.0", unverified},
        {"another program", Identity{"other", "1.1", 2}, "2", "1.1", unverified},
        {"no package", {}, "2", "1.1", unverified},
    };
    for (const auto& [what, said, build, version, result] : cases) {
        identity = said;
        auto item = good;
        item.build = build;
        item.version = version;
        EXPECT_EQ(check(item), result) << what;
        fs::remove_all(staging);
    }
}

TEST_F(Checker, EndsWithinAnHourHoweverSlowTheServersAre) {
    network->redirects = {{"https://host.example/loop", "https://host.example/loop"}};
    const struct {
        const char* url;
        double slowness;
        const char* result;
    } cases[] = {{"https://host.example/a", 1799, "ready"},
                 {"https://host.example/a", 1801, couldNotCheck},
                 {"https://host.example/loop", 500, couldNotCheck},
                 {"https://host.example/a", 86400, couldNotCheck}};
    for (const auto& [url, slowness, result] : cases) {
        network->now = 0;
        network->slowness = slowness;
        auto item = good;
        item.url = url;
        EXPECT_EQ(check(item), result) << slowness;
        EXPECT_LE(network->now, 3600) << slowness;
        fs::remove_all(staging);
    }
}

TEST_F(Checker, StagesWhereNobodyElseCanReachAndFollowsNoLink) {
    const auto mode = [](const fs::path& path) { return fs::status(path).permissions(); };
    const auto elsewhere = folder / "elsewhere";
    fs::create_directories(elsewhere);
    const auto file = staging / "Karvo-1.1.pkg";

    // The folder already exists, and everyone can write to it.
    fs::create_directories(staging);
    for (const auto& open : {staging.parent_path(), staging}) fs::permissions(open, fs::perms::all);
    EXPECT_EQ(check(good), "ready");
    EXPECT_EQ(mode(staging), fs::perms::owner_all);
    EXPECT_EQ(mode(staging.parent_path()) & (fs::perms::group_write | fs::perms::others_write),
              fs::perms::none);
    EXPECT_EQ(mode(file), fs::perms::owner_read | fs::perms::owner_write);

    // A link in place of the file is replaced; a link to another file is not read.
    fs::rename(file, elsewhere / "package");
    fs::create_symlink(elsewhere / "package", file);
    const AppcastItem item{.shortVersion = "1.1", .edSignature = good.signature};
    EXPECT_FALSE(UpdateChecker::stagedPackageIfIntact(file, item, key.publicHalf));
    EXPECT_EQ(check(good), "ready");
    EXPECT_FALSE(fs::is_symlink(file));
    EXPECT_EQ(UpdateChecker::stagedPackageIfIntact(file, item, key.publicHalf), network->package);

    // A link in place of the folder.
    fs::remove_all(staging);
    fs::remove_all(elsewhere);
    fs::create_directory(elsewhere);
    fs::create_symlink(elsewhere, staging);
    network->feedText = feed(good.text());
    EXPECT_EQ(checker().check(), UpdateResult(UpdateFailed{couldNotCheck}));
    EXPECT_TRUE(fs::is_empty(elsewhere));
}

TEST_F(Checker, NoVersionNamesAFileElsewhere) {
    for (const auto& version : {"/../../evil", "/evil", "1&#10;2"}) {
        auto item = good;
        item.version = version;
        identity->version = version == std::string("1&#10;2") ? "1\n2" : version;
        EXPECT_EQ(check(item), couldNotCheck) << version;
    }
}
