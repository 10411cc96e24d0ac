#include <map>

#include <gtest/gtest.h>

#include "OrvelUpdates/UpdateChecker.h"

#include "Support/SignedPackages.h"
#include "Support/TemporaryFolder.h"

using namespace OrvelUpdates;
namespace fs = std::filesystem;

namespace {

constexpr const char* untrusted = "The update came from somewhere Karvo does not trust.";
constexpr const char* couldNotCheck = "Karvo could not check for updates. Try again later.";

/// A network where the package lies everywhere, so only the checker's rules keep it off the disk.
class StubTransport final : public UpdateTransport {
  public:
    std::string feedText;
    std::string package = "the package";
    std::map<std::string, std::string> redirects;
    int downloads = 0;

    std::expected<UpdateReply, UpdateTransportError> fetch(const URL& url, std::size_t limit,
                                                           std::stop_token) override {
        if (url.text() == "feed:") return UpdateReply{.bytes = feedText, .redirect = {}};
        ++downloads;
        if (const auto target = redirects.find(url.text()); target != redirects.end())
            return UpdateReply{.bytes = package, .redirect = URL::parse(target->second)};
        if (package.size() > limit) return std::unexpected(UpdateTransportError::tooLarge);
        return UpdateReply{.bytes = package, .redirect = {}};
    }
};

class Checker : public testing::Test {
  protected:
    /// "ready", or the sentence for the user.
    std::string check(const FeedItem& item) {
        network->feedText = feed(item.text());
        network->downloads = 0;
        const UpdateChecker checker{.feedURL = *URL::parse("feed:"),
                                    .currentBuild = 1,
                                    .transport = network,
                                    .stagingDirectory = staging,
                                    .publicKey = key.publicHalf,
                                    .allowedHost = "host.example"};
        const auto result = checker.check();
        if (std::holds_alternative<UpdateReady>(result)) return "ready";
        EXPECT_FALSE(fs::exists(staging));
        return std::get<UpdateFailed>(result).text;
    }

    const SigningKey key;
    std::shared_ptr<StubTransport> network = std::make_shared<StubTransport>();
    const FeedItem good{.url = "https://host.example/a",
                        .signature = key.signature(network->package),
                        .length = std::to_string(network->package.size())};
    TemporaryFolder folder;
    fs::path staging = folder / "Karvo" / "Updates";
};

}  // namespace

TEST_F(Checker, AsksNobodyButTheTrustedHostForThePackage) {
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

TEST_F(Checker, LetsNoVersionNameAFileElsewhere) {
    for (const auto& version : {"/../../evil", "/evil", "1&#10;2"}) {
        auto item = good;
        item.version = version;
        EXPECT_EQ(check(item), couldNotCheck) << version;
    }
}

TEST_F(Checker, NoSingleBitOfOriginOrLengthMayChange) {
    const std::string origin = "https://host.example";
    for (std::size_t bit = 0; bit < origin.size() * 8; ++bit) {
        auto item = good;
        item.url = flipped(origin, bit) + "/a";
        EXPECT_NE(check(item), "ready") << item.url;
    }
    for (std::size_t bit = 0; bit < good.length.size() * 8; ++bit) {
        auto item = good;
        item.length = flipped(item.length, bit);
        // What is no number is no length, and then the signature alone decides.
        if (item.length.find_first_not_of("0123456789") != std::string::npos) continue;
        EXPECT_NE(check(item), "ready") << item.length;
    }
    EXPECT_EQ(check(good), "ready");
}
