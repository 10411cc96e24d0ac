#include "OrvelCovers/AppLockController.h"

#include "Support/LockStubs.h"
#include "Support/ManualLoop.h"

namespace {

struct StubBadges final : BadgePresenting {
    explicit StubBadges(CallLog& calls) : log(calls) {}
    CallLog& log;
    bool getsKeyboard = true;
    std::optional<std::int64_t> key;

    void show(std::int64_t pid, std::shared_ptr<LockCardModel>) override { call("badge", pid); }
    void place(std::int64_t pid, const Rect& over, std::optional<std::int64_t> above) override {
        log.push_back(fmt::format("place {} at {} above {}", pid, over.x, above.value_or(0)));
    }
    void hide(std::int64_t pid) override { call("hide badge", pid); }
    void setUnlocking(std::int64_t pid, bool unlocking) override {
        call(unlocking ? "open" : "close", pid);
    }
    bool takeKeyboard(std::int64_t pid) override {
        call("take keyboard", pid);
        if (getsKeyboard) key = pid;
        return getsKeyboard;
    }
    bool holdsKeyboard(std::int64_t pid) const override { return key == pid; }
    void remove(std::int64_t pid) override { call("remove badge", pid); }
    void call(std::string_view what, std::int64_t pid) {
        log.push_back(fmt::format("{} {}", what, pid));
    }
};

/// Two apps, 10 in front and 20, with one window each: 1 and 2. A cover's number is 100 higher than
/// its window's.
struct AppLockTest : testing::Test {
    struct Surface final : CoverSurface {
        explicit Surface(std::int64_t covered) : window(covered) {}
        std::int64_t windowNumber() const override { return 100 + window; }
        void place(const Rect&) override {}
        void order(std::int64_t) override {}
        void show(bool) override {}
        void remove() override {}
        std::int64_t window;
    };

    AppLockTest() {
        loop.onTick = [this](const auto& windows) { controller.windowsChanged(windows); };
        controller.onLocksChanged = [this] {
            log.push_back(fmt::format("locks {}, covers {}", controller.lockedPIDs().size(),
                                      covers.coveredWindows().size()));
        };
    }
    CallLog take() { return std::exchange(log, {}); }
    void calls(std::string_view what, std::int64_t pid) { badges.call(what, pid); }
    LockCardModel& model(std::int64_t pid) { return *controller.model(pid); }
    /// Submits a wrong password, which is checked immediately.
    void fail(std::int64_t pid) {
        verifier.verifying.answer = PasswordRejected{};
        type(pid);
    }
    void type(std::int64_t pid) {
        model(pid).password.set(Password("secret"));
        model(pid).submit();
        main.drain();
    }
    template <class Status>
    bool shows(std::int64_t pid) {
        return std::holds_alternative<Status>(model(pid).status.get());
    }

    ManualLoop main;
    CallLog log;
    std::vector<WindowInfo> screen{{1, 10, 0, {100, 0, 90, 90}}, {2, 20, 0, {200, 0, 90, 90}}};
    std::optional<std::int64_t> active = 10;
    bool orvelIsActive = true;
    bool macIsLocked = false;
    bool sensor = false;
    std::optional<int> accountFailures;
    bool mayLock = true;
    StubVerifier verifier{log};
    StubBadges badges{log};
    StubAnswer<BiometricResult> prompting{std::nullopt};
    std::vector<std::shared_ptr<StubBiometricContext>> contexts;

    CoverController covers{
        [](const CoverRequest& request) { return std::make_unique<Surface>(request.window); }};
    TimerTicker ticker{main};
    CoverLoop loop{covers,
                   {.windows = [this] { return screen; },
                    // An unknown list of numbers makes every sample a full one.
                    .windowNumbers = [] { return std::vector<std::int64_t>(); },
                    .windowBounds = [](const auto&) { return std::map<std::int64_t, Rect>(); },
                    .displays = [] { return std::vector<Rect>(); },
                    .activePID = [this] { return active; },
                    .peekPoint = [] { return std::nullopt; },
                    .mouseDown = [] { return false; },
                    .now = [this] { return main.uptime(); },
                    .ownPID = 99},
                   ticker};
    AppLockController controller{
        loop,
        badges,
        {.loop = main,
         .verifier = verifier,
         .frontApp =
             [this] {
                 return active ? std::optional(FrontApp{*active, "app"}) : std::nullopt;
             },
         .appIdentity =
             [](std::int64_t pid) {
                 return pid < 30 ? std::optional(AppIdentity{"App", nullptr}) : std::nullopt;
             },
         .activateOrvel = [this] { log.push_back("activate us"); },
         .orvelIsActive = [this] { return orvelIsActive; },
         .activateApp = [this](std::int64_t pid) { calls("activate", pid); },
         .hideApp = [this](std::int64_t pid) { calls("hide", pid); },
         .appIsActive = [this](std::int64_t pid) { return active == pid; },
         .engageMacOSLock = [this] { log.push_back("lock the Mac"); },
         .biometricsAvailable = [this] { return sensor; },
         .makeBiometricContext =
             [this] {
                 contexts.push_back(std::make_shared<StubBiometricContext>());
                 return contexts.back();
             },
         .evaluateBiometrics = [this](const auto&, const auto&) { return prompting(); },
         .accountLimit = [] { return 20; },
         .accountFailures = [this] { return accountFailures; },
         .mayLock = [this] { return mayLock; },
         .macIsLocked = [this] { return macIsLocked; },
         .wallClock = [this] { return dateFromSecondsSince1970(main.uptime()); },
         .ownPID = 99}};
};

TEST_F(AppLockTest, TheShortcutLocksTheAppInFrontAndThenAsksForIt) {
    controller.shortcutPressed();
    EXPECT_THAT(take(), ElementsAre("badge 10", "place 10 at 100 above 101", "locks 1, covers 1",
                                    "activate us", "take keyboard 10"));
    EXPECT_EQ(controller.badgePID(), 10);
    // Only the badge is in front now.
    active.reset();
    controller.shortcutPressed();
    EXPECT_THAT(take(), ElementsAre("open 10", "activate us", "take keyboard 10"));
    EXPECT_TRUE(controller.isUnlocking(10));

    controller.lock(20);
    EXPECT_THAT(take(), Not(Contains("take keyboard 20"))) << "in the background";
    controller.lock(20);
    controller.lock(30);
    EXPECT_THAT(take(), IsEmpty()) << "locked already, or gone";
    mayLock = false;
    controller.lock(25);
    EXPECT_THAT(take(), IsEmpty()) << "nothing would unlock it";
    macIsLocked = true;
    controller.shortcutPressed();
    controller.requestUnlock(20);
    EXPECT_THAT(take(), IsEmpty());
}

// Keys must not reach an app that is covered.
TEST_F(AppLockTest, AnAppThatKeepsTheKeyboardIsHiddenAndAtWorstTheMacLocked) {
    struct Case {
        bool getsKeyboard, isActive;
        bool unlocksMeanwhile, staysInFront;
        CallLog expected;
    };
    const std::vector<Case> cases{{true, true, false, true, {}},
                                  {false, true, false, false, {"hide 10"}},
                                  {true, false, false, false, {"hide 10"}},
                                  {false, true, false, true, {"hide 10", "lock the Mac"}},
                                  {false, true, true, true, {}}};
    for (const auto& c : cases) {
        active = 10;
        badges.key.reset();
        badges.getsKeyboard = c.getsKeyboard;
        orvelIsActive = c.isActive;
        controller.lock(10);
        if (!c.staysInFront) active.reset();
        if (c.unlocksMeanwhile) controller.appTerminated(10);
        take();
        main.advance(0.6);
        std::erase_if(log, [](const auto& call) {
            return !call.starts_with("hide 10") && call != "lock the Mac";
        });
        EXPECT_EQ(take(), c.expected);
        controller.appTerminated(10);
    }
}

TEST_F(AppLockTest, BringingALockedAppForwardGivesItsBadgeTheKeyboardAnotherAppEndsTheUnlock) {
    controller.lock(10);
    controller.lock(20);
    controller.requestUnlock(10);
    model(10).password.set(Password("half"));
    take();
    controller.appActivated(99);
    EXPECT_THAT(take(), IsEmpty()) << "this program itself";
    controller.appActivated(30);
    EXPECT_THAT(take(), ElementsAre("close 10"));
    EXPECT_TRUE(model(10).password.get().empty());
    EXPECT_EQ(controller.badgePID(), std::nullopt);
    controller.appActivated(20);
    EXPECT_THAT(take(), testing::IsSupersetOf({"activate us", "take keyboard 20"}));
    EXPECT_EQ(controller.badgePID(), 20);

    controller.requestUnlock(10);
    controller.appTerminated(20);
    EXPECT_EQ(controller.badgePID(), 10);
    take();
    controller.macLocked();
    EXPECT_THAT(take(), ElementsAre("close 10"));
    controller.macLocked();
    EXPECT_THAT(take(), IsEmpty()) << "it is closed";
    EXPECT_THAT(controller.lockedPIDs(), ElementsAre(10));
    controller.appTerminated(10);
    EXPECT_THAT(take(), ElementsAre("remove badge 10", "locks 0, covers 0"));
    EXPECT_EQ(controller.badgePID(), std::nullopt);
}

TEST_F(AppLockTest, TheRightPasswordRevealsTheApp) {
    controller.lock(10);
    controller.requestUnlock(10);
    verifier.verifying.answer = PasswordUnavailable{};
    type(10);
    EXPECT_TRUE(shows<LockCardModel::Unavailable>(10));
    fail(10);
    EXPECT_TRUE(shows<LockCardModel::WrongPassword>(10));
    EXPECT_EQ(model(10).shakeCount.get(), 1);
    verifier.verifying.answer.reset();
    type(10);
    EXPECT_TRUE(shows<LockCardModel::Verifying>(10));
    take();
    verifier.verifying.arrive(PasswordAccepted{});
    EXPECT_THAT(take(), ElementsAre("remove badge 10", "locks 0, covers 0", "activate 10"));
}

TEST_F(AppLockTest, FailuresOfOneAppAloneMakeItWaitAndTheTicksCountDown) {
    controller.lock(10);
    controller.lock(20);
    for (int i = 0; i < 5; ++i) fail(10);
    ASSERT_TRUE(shows<LockCardModel::Cooldown>(10));
    EXPECT_EQ(model(10).cooldownTotal.get(), 60);
    EXPECT_EQ(model(10).cooldownRemaining(), 60);
    fail(20);
    EXPECT_TRUE(shows<LockCardModel::WrongPassword>(20));
    main.advance(59);
    EXPECT_EQ(model(10).countdownText(), "0:01");
    main.advance(1.5);
    EXPECT_TRUE(shows<LockCardModel::Ready>(10));

    take();
    accountFailures = 18;
    fail(20);
    EXPECT_TRUE(shows<LockCardModel::PasswordsPaused>(20));
    EXPECT_THAT(take(), Not(Contains("verify secret"))) << "the account keeps its last tries";
}

TEST_F(AppLockTest, TheSensorIsAskedAgainUntilItUnlocksOrIsOfNoUse) {
    sensor = true;
    controller.lock(10);
    controller.requestUnlock(10);
    controller.requestUnlock(10);
    main.advance(0.1);
    EXPECT_EQ(prompting.waiting(), 0u) << "the view picks the prompt up first";
    main.advance(0.1);
    prompting.arrive(BiometricFailed{});
    main.advance(1.1);
    EXPECT_EQ(prompting.waiting(), 0u);
    main.advance(0.1);
    EXPECT_EQ(prompting.waiting(), 1u);
    controller.cancelUnlock(10);
    EXPECT_FALSE(contexts.back()->valid);
    prompting.arrive(BiometricSuccess{});
    EXPECT_THAT(controller.lockedPIDs(), ElementsAre(10)) << "too late";

    const auto answer = [this](BiometricResult result) {
        controller.cancelUnlock(10);
        controller.requestUnlock(10);
        main.advance(0.2);
        take();
        prompting.arrive(result);
    };
    answer(BiometricLockout{});
    EXPECT_FALSE(model(10).touchIDAvailable.get());
    answer(BiometricSuccess{});
    EXPECT_THAT(take(), ElementsAre("remove badge 10", "locks 0, covers 0", "activate 10"));
}

TEST_F(AppLockTest, TheBadgeSitsOnTheFrontmostCoveredWindow) {
    controller.lock(10);
    take();
    screen = {{3, 10, 0, {300, 0, 90, 90}}, {1, 10, 0, {100, 0, 90, 90}}};
    loop.nudge();
    EXPECT_THAT(take(), ElementsAre("place 10 at 300 above 103"));
    screen.clear();
    controller.requestUnlock(10);
    take();
    loop.nudge();
    EXPECT_THAT(take(), IsEmpty()) << "the user types into it";
    badges.key.reset();
    loop.nudge();
    EXPECT_THAT(take(), ElementsAre("hide badge 10"));
}

}  // namespace
