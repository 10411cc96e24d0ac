#include <sys/resource.h>

#include "OrvelCore/SettingsStore.h"
#include "OrvelUpdates/BackgroundChecks.h"
#include "OrvelUpdates/UpdateController.h"

#include "Eventually.h"
#include "Packages.h"
#include "Support/ManualLoop.h"
#include "Support/SignedPackages.h"
#include "UpdateServer.h"

namespace fs = std::filesystem;

namespace {

const std::string ready = "Version 1.1 is ready to install.";
const std::string upToDate = "Karvo is up to date.";
const std::string couldNotCheck = "Karvo could not check for updates. Try again later.";
const std::string untrusted = "The update came from somewhere Karvo does not trust.";
const std::string unverified = "The update did not verify, so Karvo did not keep it.";

/// The whole updater except its thread, with a real network and a real disk.
class Updates : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        server = std::make_unique<UpdateServer>();
        package = makePackage("1.1-2");
    }
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

    /// The message that the user reads after a check.
    std::string check() {
        spawn(loop, controller.checkNow());
        loop.drain();
        return UpdateController::statusText(controller.state());
    }
    Task<UpdateResult> checkHere(UpdateChecker::OnProgress onProgress) {
        co_return checker.check({}, onProgress);
    }

    std::vector<std::string> staged() const {
        std::vector<std::string> names;
        if (fs::exists(staging))
            for (const auto& entry : fs::directory_iterator(staging))
                names.push_back(entry.path().filename());
        return names;
    }

    static std::unique_ptr<UpdateServer> server;
    static std::string package;
    const SigningKey key;
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
    InMemorySettingsStore defaults;
    std::vector<std::string> opened;
    UpdateController controller{
        {.check = [this](auto onProgress) { return checkHere(std::move(onProgress)); },
         .cancel = [] {},
         .now = [] { return Date(); },
         .schedule = [](auto, auto) {},
         .verify =
             [this](const auto& file, const auto& offered) {
                 return UpdateChecker::stagedPackageIfIntact(file, offered, key.publicHalf);
             },
         .open =
             [this](const auto&, std::string_view archive) {
                 opened.emplace_back(archive);
                 return true;
             }},
        defaults,
        loop};
};

std::unique_ptr<UpdateServer> Updates::server;
std::string Updates::package;

}  // namespace

TEST_F(Updates, SayWhatTheyFoundAndKeepNothingThatIsNotSigned) {
    const auto build = [this](const char* number) {
        auto changed = item();
        changed.build = number;
        return changed.text();
    };
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
        {"moved", item("moved/" + server->url("file/package")).text(), ready},
        {"moved to another host", item("moved/" + elsewhere).text(), untrusted},
        {"moved to http", item("moved/http://localhost/file/package").text(), untrusted},
        {"truncated", item("half/package").text(), couldNotCheck},
        {"without an end", item("endless/package").text(), unverified},
        {"stalling", item("stalling/package").text(), couldNotCheck},
        {"404 with the package in it", item("missing/package").text(), couldNotCheck},
        {"an old package for a new build", build("9000"), unverified},
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
}

TEST_F(Updates, SendNothingToAServerThatIsNotTrusted) {
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

TEST_F(Updates, EndThoughTheServerGoesOnSendingForever) {
    checker.timeout = 1;
    offer(item("trickling/package").text());
    EXPECT_EQ(check(), couldNotCheck);
    checker.feedURL = *URL::parse(server->url("trickling/feed"));
    EXPECT_EQ(check(), couldNotCheck);
}

TEST_F(Updates, SurviveADiskThatTakesNothing) {
    offer(item().text());
    // A folder that nobody can create, not even root.
    checker.stagingDirectory = "/proc/Karvo";
    EXPECT_EQ(check(), couldNotCheck);

    checker.stagingDirectory = staging;
    // The limit below applies to every file, including the copy that the package tools read.
    checker.identify = [](std::string_view) {
        return UpdatePlatform::PackageIdentity{"karvo", "1.1", 2};
    };
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
    EXPECT_THAT(opened, testing::ElementsAre(package));
}

TEST_F(Updates, EndInTheMiddleOfADownload) {
    offer(item("stalling/package").text());
    auto options = server->options();
    options.stallTimeout = 100'000;
    checker.transport = std::make_shared<URLSessionUpdateTransport>(options);
    auto checks = std::make_unique<BackgroundChecks>(
        loop, [this](const StopToken& stop, const auto& onProgress) {
            return checker.check(stop, onProgress);
        });
    std::vector<UpdateResult> results;
    std::int64_t received = 0;
    struct Body {
        static Task<void> run(BackgroundChecks& background, std::int64_t& bytes,
                              std::vector<UpdateResult>& answers) {
            UpdateResult result = co_await background.run(
                [&bytes](const DownloadProgress& progress) { bytes = progress.received; });
            answers.push_back(result);
        }
    };
    const auto begin = [&] {
        received = 0;
        spawn(loop, Body::run(*checks, received, results));
        ASSERT_TRUE(eventually([&] {
            loop.drain();
            return received > 0;
        }));
    };
    begin();
    checks->cancel();
    EXPECT_TRUE(eventually([&] {
        loop.drain();
        return !results.empty();
    }));
    EXPECT_THAT(results, testing::ElementsAre(UpdateResult(UpdateCancelled{})));

    begin();
    checks.reset();
    loop.drain();
    EXPECT_EQ(results.size(), 1U) << "nothing comes after the end";
    EXPECT_TRUE(staged().empty());
}

class MakeUpdate : public Updates {
  protected:
    Finished script(DesktopTest::Arguments arguments) {
        arguments.insert(arguments.begin(), KARVO_MAKE_UPDATE);
        return run(arguments, {{"PATH", "/usr/bin:/bin"}});
    }
    std::string packageFile(const std::string& version, const std::string& name = "karvo") {
        const auto file = folder / (version + ".deb");
        writeText(file, makePackage(version, name));
        return file;
    }
    Finished add(const std::string& file, const std::string& signingKey) {
        return script({"add", feedFile, signingKey, file, url});
    }

    const std::string secret = folder / "private.pem";
    const std::string feedFile = server->folder() / "feed";
    const std::string url = server->url("file/package?a=1&b='2'");
};

TEST_F(MakeUpdate, MakesWhatTheUpdaterTakes) {
    const auto publicHalf = script({"key", secret}).output;
    EXPECT_EQ(fs::status(secret).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(script({"public", secret}).output, publicHalf);
    checker.publicKey =
        AppcastSignature::publicKeyFromBase64(publicHalf.substr(0, publicHalf.size() - 1));
    ASSERT_TRUE(checker.publicKey);
    fs::remove(feedFile);
    for (const auto* const version : {"1.7-7", "1.8~rc-1-8"}) {
        const auto file = packageFile(version);
        const auto added = add(file, secret);
        EXPECT_EQ(added.status, 0) << added.output;
        fs::copy_file(file, server->folder() / "package", fs::copy_options::overwrite_existing);
    }
    EXPECT_EQ(check(), "Version 1.8~rc-1 is ready to install.");
    EXPECT_EQ(AppcastParser::parse(textOf(feedFile))->size(), 2);
}

TEST_F(MakeUpdate, RefusesWhatNoUpdaterWouldTakeAndLeavesTheFeedAsItWas) {
    const auto other = folder / "rsa.pem";
    run({"openssl", "genpkey", "-algorithm", "rsa", "-out", other}, {{"PATH", "/usr/bin:/bin"}});
    EXPECT_NE(script({"public", other}).status, 0);
    EXPECT_EQ(script({"key", secret}).status, 0);
    EXPECT_NE(script({"key", secret}).status, 0) << "never over an old key";

    const auto good = packageFile("1.1-2");
    const auto noPackage = folder / "text";
    writeText(noPackage, "text");
    const struct {
        const char* what;
        std::string package;
        std::string signingKey;
    } cases[] = {
        {"another kind of key", good, other},
        {"no key", good, noPackage},
        {"no build number", packageFile("1.1"), secret},
        {"a build that is no number", packageFile("1.1-2ubuntu1"), secret},
        {"build 0", packageFile("1.1-0"), secret},
        {"another program", packageFile("1.1-3", "other"), secret},
        {"no package", noPackage, secret},
    };
    fs::remove(feedFile);
    for (const auto& [what, file, signingKey] : cases) {
        EXPECT_NE(add(file, signingKey).status, 0) << what;
        EXPECT_FALSE(fs::exists(feedFile)) << what;
    }
    EXPECT_EQ(add(good, secret).status, 0);
    const auto before = textOf(feedFile);
    EXPECT_NE(add(good, secret).status, 0) << "the same build twice";
    EXPECT_EQ(textOf(feedFile), before);
}
