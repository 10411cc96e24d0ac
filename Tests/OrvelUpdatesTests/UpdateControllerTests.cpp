#include "OrvelCore/SettingsStore.h"
#include "OrvelUpdates/UpdateAlarm.h"
#include "OrvelUpdates/UpdateController.h"

#include "Support/ManualLoop.h"
#include "Support/StubAnswer.h"

namespace {

constexpr double day = 86400;

UpdateResult ready(const std::string& version) {
    AppcastItem item;
    item.shortVersion = version;
    return UpdateReady{item, "/staged/" + version};
}

class Updater : public testing::Test {
  protected:
    static Date at(double seconds) { return dateFromSecondsSince1970(1e9 + seconds); }
    UpdateSystem system() {
        return {.check =
                    [this](UpdateChecker::OnProgress onProgress) {
                        ++checks;
                        download = std::move(onProgress);
                        return checking();
                    },
                .cancel = [this] { checking.arrive(UpdateCancelled{}); },
                .now = [this] { return at(now); },
                .schedule =
                    [this](Date date, std::function<void()> call) {
                        EXPECT_FALSE(wakeUp) << "one is pending";
                        wakeUp = {secondsBetween(at(0), date), std::move(call)};
                    },
                .verify =
                    [this](const auto& package, const auto&) {
                        return intact ? std::optional("bytes of " + package.string())
                                      : std::nullopt;
                    },
                .open =
                    [this](const auto&, std::string_view archive) {
                        opened.emplace_back(archive);
                        return opens;
                    }};
    }
    void start() {
        spawn(loop, controller->start());
        loop.drain();
    }
    void checkNow() {
        spawn(loop, controller->checkNow());
        loop.drain();
    }
    void fire() {
        const auto call = std::exchange(wakeUp, std::nullopt)->second;
        call();
        loop.drain();
    }
    std::optional<double> wakesAt() const {
        return wakeUp.transform([](const auto& pending) { return pending.first; });
    }
    std::optional<double> checkedAt() const {
        return defaults.doubleForKey("updatesCheckedAt").transform([](double seconds) {
            return seconds - 1e9;
        });
    }
    std::string status() const { return UpdateController::statusText(controller->state()); }

    ManualLoop loop;
    InMemorySettingsStore defaults;
    double now = 0;
    int checks = 0;
    StubAnswer<UpdateResult> checking{UpToDate{}};
    std::optional<std::pair<double, std::function<void()>>> wakeUp;
    UpdateChecker::OnProgress download;
    bool intact = true;
    bool opens = true;
    std::vector<std::string> opened;
    std::unique_ptr<UpdateController> controller =
        std::make_unique<UpdateController>(system(), defaults, loop);
};

}  // namespace

TEST_F(Updater, LooksForTheFirstTimeADayAfterItWasInstalledAndThenDaily) {
    EXPECT_EQ(status(), "Karvo checks for updates once a day.");
    controller->setAutomaticChecks(false);
    start();
    EXPECT_EQ(checks, 0);
    EXPECT_EQ(checkedAt(), 0);
    EXPECT_EQ(wakesAt(), day) << "even though it is turned off, it starts the schedule once";
    controller->setAutomaticChecks(true);
    now = 23 * 3600;
    start();
    EXPECT_EQ(wakesAt(), day) << "without a second wake-up";
    now = day;
    fire();
    EXPECT_EQ(checks, 1);
    EXPECT_EQ(status(), "Karvo is up to date.");
    EXPECT_EQ(wakesAt(), 2 * day);
}

TEST_F(Updater, ChecksWhenItIsDueAndOtherwiseArmsForTheRest) {
    const struct {
        double last;
        double now;
        int checks;
        double wakesAt;
    } cases[] = {
        {0, 23 * 3600, 0, day},   {0, day - 0.5, 0, day},   {0, day, 1, 2 * day},
        {0, 7 * day, 1, 8 * day}, {5 * day, 0, 0, 6 * day},  // the clock was set back
    };
    for (const auto& expected : cases) {
        controller = std::make_unique<UpdateController>(system(), defaults, loop);
        defaults.setDouble("updatesCheckedAt", 1e9 + expected.last);
        now = expected.now;
        checks = 0;
        wakeUp.reset();
        start();
        EXPECT_EQ(checks, expected.checks) << now;
        EXPECT_EQ(wakesAt(), expected.wakesAt) << now;
    }
}

TEST_F(Updater, IsQuietWhenTurnedOffButStillChecksWhenAsked) {
    defaults.setString("updatesAutomatic", "no");
    EXPECT_TRUE(controller->automaticChecks());
    start();
    controller->setAutomaticChecks(false);
    now = day;
    fire();
    EXPECT_EQ(checks, 0);
    checkNow();
    EXPECT_EQ(checks, 1);
    EXPECT_EQ(checkedAt(), day);
    EXPECT_FALSE(wakeUp);
    start();
    EXPECT_FALSE(wakeUp);
}

TEST_F(Updater, OfTwoChecksAtOnceTheLaterResultStands) {
    checking.answer.reset();
    checkNow();
    checkNow();
    EXPECT_EQ(checks, 2);
    EXPECT_EQ(status(), "Checking for updates");
    checking.arrive(ready("1.2"));
    EXPECT_EQ(status(), "Version 1.2 is ready to install.");
    checking.arrive(UpToDate{});
    EXPECT_EQ(status(), "Karvo is up to date.");
    EXPECT_FALSE(controller->install(false, 0));
    // An answer after the controller's end is dropped.
    checkNow();
    controller.reset();
    checking.arrive(UpToDate{});
    wakeUp->second();
    loop.drain();
}

TEST_F(Updater, OpensOnlyWhatIsStillVerifiedAndWhileNothingIsLocked) {
    EXPECT_FALSE(controller->install(false, 0));
    checking.answer = ready("1.2");
    checkNow();
    EXPECT_FALSE(controller->install(true, 0));
    EXPECT_FALSE(controller->install(false, 1));
    EXPECT_TRUE(opened.empty());
    EXPECT_TRUE(controller->install(false, 0));
    EXPECT_TRUE(controller->install(false, 0)) << "a user may have closed the installer";
    EXPECT_THAT(opened, ElementsAre("bytes of /staged/1.2", "bytes of /staged/1.2"));
    intact = false;
    EXPECT_FALSE(controller->install(true, 0));
    EXPECT_EQ(status(), "Version 1.2 is ready to install.");
    EXPECT_FALSE(controller->install(false, 0));
    EXPECT_EQ(status(), "The update changed after Karvo checked it, so Karvo did not open it.");
    intact = true;
    EXPECT_FALSE(controller->install(false, 0));
    EXPECT_EQ(opened.size(), 2);
}

TEST_F(Updater, FailsWhenThePackageCouldNotBePutBeforeTheInstaller) {
    checking.answer = ready("1.2");
    checkNow();
    opens = false;
    EXPECT_FALSE(controller->install(false, 0));
    EXPECT_EQ(status(), "Karvo could not open the update. Try again later.");
}

TEST_F(Updater, ShowsADownloadAndGoesBackWhenItIsCancelled) {
    checking.answer = ready("1.2");
    checkNow();
    checking.answer.reset();
    now = 10;
    checkNow();
    EXPECT_EQ(status(), "Checking for updates");
    download({.received = 1'500'000, .total = 3'600'000});
    EXPECT_EQ(status(), "Downloading the update: 41 %");
    download({.received = 3'999'999});
    EXPECT_EQ(status(), "Downloading the update: 3 MB");
    checkNow();
    controller->cancel();
    EXPECT_EQ(status(), "Version 1.2 is ready to install.");
    EXPECT_EQ(checkedAt(), 10);
    download({.received = 1});
    EXPECT_EQ(status(), "Version 1.2 is ready to install.") << "what comes late is not shown";
    EXPECT_TRUE(controller->install(false, 0));
}

TEST(UpdateAlarm, CountsSleepAndNotTheWallClock) {
    ManualLoop loop;
    double slept = 0;
    double wall = 0;
    int calls = 0;
    UpdateAlarm alarm(
        loop, [&] { return loop.uptime() + slept; },
        [&] { return dateFromSecondsSince1970(wall); });
    const auto set = [&](double date) {
        alarm.set(dateFromSecondsSince1970(date), [&] { ++calls; });
    };
    set(day);
    wall = -1e9;
    loop.advance(day - 1);
    EXPECT_EQ(calls, 0);
    loop.advance(1);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(loop.timerCount(), 0);

    set(wall + day);
    slept = 7 * day;
    loop.advance(UpdateAlarm::longestNap);
    EXPECT_EQ(calls, 2);
    set(wall - day);
    EXPECT_EQ(calls, 2);
    loop.advance(0);
    EXPECT_EQ(calls, 3);
}
