#include <csignal>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include "OrvelCore/SettingsStore.h"
#include "OrvelUpdates/BackgroundChecks.h"
#include "OrvelUpdates/UpdateController.h"
#include "OrvelUpdates/UpdatePlatform.h"

#include "Eventually.h"
#include "Support/Environment.h"
#include "Support/ManualLoop.h"
#include "Support/SignedPackages.h"
#include "UpdateServer.h"

using namespace OrvelUpdates;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

const std::string ready = "Version 1.1 is ready to install.";
const std::string upToDate = "Karvo is up to date.";
const std::string couldNotCheck = "Karvo could not check for updates. Try again later.";
const std::string untrusted = "The update came from somewhere Karvo does not trust.";
const std::string unverified = "The update did not verify, so Karvo did not keep it.";

/// The whole updater but for its thread, on a real network and a real disk.
class Updates : public testing::Test {
  protected:
    static void SetUpTestSuite() { server = std::make_unique<UpdateServer>(); }
    static void TearDownTestSuite() { server.reset(); }

    void SetUp() override {
        writeText(server->folder() / "package", package);
        server->forgetRequests();
    }

    FeedItem item(const std::string& path = "file/package") const {
        return {.url = server->url(path),
                .signature = key.signature(package),
                .length = std::to_string(package.size())};
    }
    void offer(const std::string& items) const {
        writeText(server->folder() / "feed", feed(items));
    }

    /// What the user reads after a check.
    std::string check() {
        OrvelSystem::spawn(loop, controller.checkNow());
        loop.drain();
        return UpdateController::statusText(controller.state());
    }
    OrvelSystem::Task<UpdateResult> checkHere() { co_return checker.check(); }

    std::vector<std::string> staged() const {
        std::vector<std::string> names;
        if (fs::exists(staging))
            for (const auto& entry : fs::directory_iterator(staging))
                names.push_back(entry.path().filename());
        return names;
    }

    static std::unique_ptr<UpdateServer> server;
    const SigningKey key;
    const std::string package = std::string(300'000, 'p');
    TemporaryFolder folder;
    const fs::path staging = folder / "Updates";
    UpdateChecker checker{.feedURL = *URL::parse(server->url("file/feed")),
                          .currentBuild = 1,
                          .transport = server->transport(),
                          .stagingDirectory = staging,
                          .publicKey = key.publicHalf,
                          .allowedHost = "localhost",
                          .packageExtension = ".deb"};
    ManualLoop loop;
    OrvelCore::InMemorySettingsStore defaults;
    std::vector<fs::path> opened;
    UpdateController controller{{.check = [this] { return checkHere(); },
                                 .now = [] { return OrvelCore::Date(); },
                                 .schedule = [](auto, auto) {},
                                 .open = [this](const auto& file) { opened.push_back(file); },
                                 .verify =
                                     [this](const auto& file, const auto& offered) {
                                         return UpdateChecker::stagedPackageIsIntact(
                                             file, offered, key.publicHalf);
                                     }},
                                defaults,
                                loop};
};

std::unique_ptr<UpdateServer> Updates::server;

}  // namespace

TEST_F(Updates, SayWhatTheyFoundAndKeepNothingThatIsNotSigned) {
    const auto with = [this](auto change) {
        auto changed = item();
        change(changed);
        return changed.text();
    };
    const auto build = [&](const char* number) {
        return with([=](FeedItem& changed) { changed.build = number; });
    };
    const auto signature = [&](const std::string& text) {
        return with([=](FeedItem& changed) { changed.signature = text; });
    };
    const auto length = [&](const std::string& text, const std::string& path = "file/package") {
        return with([=, this](FeedItem& changed) {
            changed = item(path);
            changed.length = text;
        });
    };
    const auto raw = key.rawSignature(package);
    const std::string elsewhere = server->url("file/package").replace(8, 9, "127.0.0.1");
    const struct {
        const char* what;
        std::string items;
        std::string result;
    } cases[] = {
        {"older and equal", build("0") + build("1"), upToDate},
        {"newer", build("2"), ready},
        {"the first of equal builds", item().text() + item("missing/package").text(), ready},
        {"not the first of equal builds", item("missing/package").text() + item().text(),
         couldNotCheck},
        {"unknown length", length("0"), ready},
        {"other host", with([&](FeedItem& changed) { changed.url = elsewhere; }), untrusted},
        {"http", with([](FeedItem& changed) { changed.url.erase(4, 1); }), untrusted},
        {"moved", item("moved/" + server->url("file/package")).text(), ready},
        {"moved to another host", item("moved/" + elsewhere).text(), untrusted},
        {"moved to http", item("moved/http://localhost/file/package").text(), untrusted},
        {"truncated", item("half/package").text(), couldNotCheck},
        {"without an end", item("endless/package").text(), unverified},
        {"stalling", item("stalling/package").text(), couldNotCheck},
        {"404 with the package in it", item("missing/package").text(), couldNotCheck},
        {"longer than told", length("299999"), unverified},
        {"shorter than told", length("300001"), unverified},
        {"another key's", signature(SigningKey().signature(package)), unverified},
        {"63 bytes of signature", signature(base64(raw.substr(0, 63))), unverified},
        {"65 bytes of signature", signature(base64(raw + 'x')), unverified},
        {"no signature", signature(""), unverified},
        {"no items", "", couldNotCheck},
        {"garbage", "<<<", couldNotCheck},
    };
    for (const auto& [what, items, result] : cases) {
        offer(items);
        EXPECT_EQ(check(), result) << what;
        if (result == ready) {
            EXPECT_EQ(textOf(staging / "Karvo-1.1.deb"), package) << what;
            fs::remove_all(staging);
        }
        EXPECT_TRUE(staged().empty()) << what;
    }
    EXPECT_THAT(server->requests(), HasSubstr("/file/feed Karvo None\n"));
    EXPECT_THAT(server->requests(), Not(HasSubstr("a=b"))) << "no cookies";

    offer(item().text());
    checker.publicKey.reset();
    EXPECT_EQ(check(), unverified);
}

TEST_F(Updates, AskNobodyWhoseCertificateOrPathDoesNotHold) {
    offer(item().text());
    const auto sorry = [&](const std::string& feedURL, UpdateTransport* transport = nullptr) {
        checker.feedURL = *URL::parse(feedURL);
        if (transport != nullptr) checker.transport = {transport, [](auto) {}};
        EXPECT_EQ(check(), couldNotCheck) << feedURL;
        EXPECT_TRUE(server->requests().empty()) << server->requests();
    };
    const auto good = server->url("file/feed");
    sorry(std::string(good).replace(8, 9, "127.0.0.1"));
    sorry(std::string(good).erase(4, 1));
    sorry("file://" + (server->folder() / "feed").string());
    sorry("https://localhost:1/feed");
    URLSessionUpdateTransport withSystemAuthorities;
    sorry(good, &withSystemAuthorities);
}

TEST_F(Updates, SurviveADiskThatTakesNothing) {
    offer(item().text());
    // A folder that nobody can make, not even root.
    checker.stagingDirectory = "/proc/Karvo";
    EXPECT_EQ(check(), couldNotCheck);

    checker.stagingDirectory = staging;
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{100'000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    const auto result = check();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(result, couldNotCheck);
    EXPECT_TRUE(staged().empty());
    EXPECT_EQ(check(), ready);
}

TEST_F(Updates, InstallOnlyTheFileThatWasChecked) {
    offer(item().text());
    const auto file = staging / "Karvo-1.1.deb";
    const auto expectRefused = [&] {
        EXPECT_FALSE(controller.install(false, 0));
        EXPECT_EQ(UpdateController::statusText(controller.state()),
                  "The update changed after Karvo checked it, so Karvo did not open it.");
        EXPECT_TRUE(opened.empty());
    };
    for (const auto& content : {package + "!", std::string(), "P" + package.substr(1)}) {
        EXPECT_EQ(check(), ready);
        writeText(file, content);
        expectRefused();
    }
    EXPECT_EQ(check(), ready);
    fs::remove(file);
    mkfifo(file.c_str(), 0600);
    expectRefused();
    fs::remove(file);
    EXPECT_EQ(check(), ready);
    EXPECT_TRUE(controller.install(false, 0));
    EXPECT_THAT(opened, testing::ElementsAre(file));
}

TEST_F(Updates, EndInTheMiddleOfADownload) {
    offer(item("stalling/package").text());
    auto options = server->options();
    options.stallTimeout = 100'000;
    checker.transport = std::make_shared<URLSessionUpdateTransport>(options);
    auto checks = std::make_unique<BackgroundChecks>(
        loop, [this](const std::stop_token& stop) { return checker.check(stop); });
    struct Body {
        static OrvelSystem::Task<void> run(BackgroundChecks& background) {
            UpdateResult result = co_await background.run();
            ADD_FAILURE() << result.index();
        }
    };
    OrvelSystem::spawn(loop, Body::run(*checks));
    loop.drain();
    ASSERT_TRUE(
        DesktopTest::eventually([&] { return server->requests().contains("/stalling/package"); }));
    checks.reset();
    loop.drain();
    EXPECT_TRUE(staged().empty());
}

TEST_F(Updates, TakeWhatTheShippersScriptMakes) {
    const auto script = [this](DesktopTest::Arguments arguments) {
        arguments.insert(arguments.begin(), KARVO_MAKE_UPDATE);
        const auto finished = DesktopTest::run(arguments, {{"PATH", "/usr/bin:/bin"}});
        EXPECT_EQ(finished.status, 0) << finished.output;
        return finished.output;
    };
    const std::string secret = folder / "private.pem";
    const auto publicHalf = script({"key", secret});
    EXPECT_EQ(fs::status(secret).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    checker.publicKey =
        AppcastSignature::publicKeyFromBase64(publicHalf.substr(0, publicHalf.size() - 1));
    ASSERT_TRUE(checker.publicKey);
    const std::string feedFile = server->folder() / "feed";
    fs::remove(feedFile);
    const auto url = server->url("file/package?a=1&b='2'");
    for (const auto* const build : {"7", "8"})
        script({"add", feedFile, secret, server->folder() / "package", build,
                std::string("1.") + build, url});
    EXPECT_EQ(check(), "Version 1.8 is ready to install.");
    EXPECT_EQ(AppcastParser::parse(textOf(feedFile))->size(), 2);
}

TEST(UpdatePlatform, HandsThePackageOrElseItsFolderToTheDesktop) {
    const TemporaryFolder folder;
    const auto log = folder / "log";
    writeText(folder / "xdg-open",
              "#!/bin/sh\necho \"$1\" >>" + log.string() + "\n[ -d \"$1\" ]\n");
    fs::permissions(folder / "xdg-open", fs::perms::owner_all);
    const Environment path("PATH", (folder.path().string() + ":/usr/bin:/bin").c_str());
    const auto package = folder / "Karvo-1 '$(id)'.deb";
    UpdatePlatform::openPackage(package);
    const auto expected = package.string() + "\n" + folder.path().string() + "\n";
    EXPECT_TRUE(DesktopTest::eventually([&] { return textOf(log) == expected; })) << textOf(log);
}
