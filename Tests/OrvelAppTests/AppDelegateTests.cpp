#include <algorithm>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvelApp/AppDelegate.h"
#include "OrvelBlurTests/StubOverlayPanel.h"
#include "OrvelCore/AttemptLog.h"
#include "OrvelCore/Shortcut.h"

#include "Support/LockStubs.h"
#include "Support/TemporaryFolder.h"

namespace {

using namespace OrvelApp;
using namespace OrvelCore;
using OrvelAuth::PasswordAccepted;
using OrvelAuth::PasswordRejected;
using OrvelLock::LockContent;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view thisBoot = "boot-1";

class StubHotkeys final : public OrvelSystem::HotkeyPlatform {
  public:
    std::function<void(std::uint32_t)> pressed;
    std::map<std::uint32_t, std::uint32_t> numbersByKey;  // modifiers and key code
    bool refuses = false;

    void installEventHandler(std::function<void(std::uint32_t)> handler) override {
        pressed = std::move(handler);
    }
    std::optional<OrvelSystem::HotkeyRef> registerHotKey(std::uint32_t keyCode,
                                                         std::uint32_t modifiers,
                                                         std::uint32_t number) override {
        if (refuses) return {};
        numbersByKey[modifiers + keyCode] = number;
        return number;
    }
    void unregisterHotKey(OrvelSystem::HotkeyRef ref) override {
        std::erase_if(numbersByKey, [ref](const auto& entry) { return entry.second == ref; });
    }
    void press(const Shortcut& shortcut) {
        pressed(numbersByKey.at(OrvelSystem::HotkeyCenter::carbonModifiers(shortcut.modifiers) +
                                shortcut.keyCode));
    }
};

class StubAwake final : public OrvelSystem::AwakeAssertion {
  public:
    bool isTaken() const override { return true; }
};

class StubCover final : public OrvelCovers::CoverSurface {
  public:
    StubCover(CallLog& log, std::int64_t pid) : log_(log), pid_(pid) {
        log_.push_back(fmt::format("cover {}", pid));
    }
    ~StubCover() override { log_.push_back(fmt::format("uncover {}", pid_)); }
    std::int64_t windowNumber() const override { return 1000 + pid_; }
    void place(const Rect&) override {}
    void order(std::int64_t) override {}
    void show(bool) override {}
    void remove() override {}

  private:
    CallLog& log_;
    std::int64_t pid_;
};

class StubStatusItem final : public OrvelModes::StatusItem {
  public:
    explicit StubStatusItem(MenuBarIconState& state) : state_(state) {}
    void setVisible(bool) override {}
    void setState(MenuBarIconState state) override { state_ = state; }
    std::optional<bool> isShown() const override { return true; }
    void performClick() override {}

  private:
    MenuBarIconState& state_;
};

/// The whole program on stubs, with a clock that is turned by hand.
struct AppTest : testing::Test {
    ManualLoop loop;
    StubLockDesktop desktop{loop};
    CallLog& log = desktop.log;
    InMemorySettingsStore defaults;
    StubMarkers markers{log};
    StubVerifier verifier{log};
    StubHotkeys hotkeys;
    OrvelSystem::DisplayAwake awake{
        "test", [](const std::string&) { return std::make_unique<StubAwake>(); }};
    TemporaryFolder folder;
    std::vector<std::string> lines;
    std::map<std::string, std::string, std::less<>> environment;
    bool guardAvailable = true;
    bool macIsLocked = false;
    bool grabsAreFree = true;
    OrvelBlur::BlurSupport blurSupport{true, 15, {15}};
    std::optional<OrvelBlur::BlurBackend> backend;
    bool reduceTransparency = false;
    std::optional<OverlayLook> look;
    SessionHandlers session;
    std::vector<WindowInfo> windows{{80, 8, 0, {0, 0, 100, 100}}, {70, 7, 0, {50, 50, 100, 100}}};
    std::int64_t frontPID = 8;
    OrvelSystem::Workspace::Events workspace;
    std::function<void()> clickCover;
    PanelRecord badge;
    OrvelModes::StatusMenuController* statusMenu = nullptr;
    MenuBarIconState iconState = MenuBarIconState::rest;
    std::function<void()> onObserved = [] {};
    std::unique_ptr<AppDelegate> app;

    std::filesystem::path attempts() const { return folder.path() / "attempts.json"; }

    MenuSystem menu() {
        MenuSystem made;
        made.makeStatusItem = [this](OrvelModes::StatusMenuController& controller) {
            statusMenu = &controller;
            return std::make_unique<StubStatusItem>(iconState);
        };
        made.panel.watchPresses = [](const auto&) { return nullptr; };
        made.panel.watchActivations = [](const auto&) { return nullptr; };
        const auto running = [](std::int64_t pid) {
            return std::optional(OrvelCovers::RunningApp{pid, fmt::format("app.{}", pid),
                                                         fmt::format("App {}", pid)});
        };
        made.front = [this, running] { return running(frontPID); };
        made.app = running;
        made.nameForBundleID = [](const auto&) { return std::nullopt; };
        made.iconForBundleID = [](const auto&) { return nullptr; };
        made.screenReaderOn = [] { return false; };
        made.quit = [this] { log.push_back("quit"); };
        return made;
    }

    OrvelUpdates::UpdateSystem updates() {
        OrvelUpdates::UpdateSystem made;
        made.check = [this]() -> OrvelSystem::Task<OrvelUpdates::UpdateResult> {
            log.push_back("check for updates");
            return answer();
        };
        made.now = [this] { return desktop.present; };
        made.schedule = [](Date, const auto&) {};
        made.open = [this](const auto&) { log.push_back("open package"); };
        made.verify = [](const auto&, const auto&) { return true; };
        return made;
    }
    static OrvelSystem::Task<OrvelUpdates::UpdateResult> answer() {
        co_return OrvelUpdates::UpdateReady{.item = {.shortVersion = "2.0"},
                                            .package = "/tmp/package"};
    }

    /// Apps 7 and 8 have a window each, 8's in front, and covers only tell what they do.
    CoverSystem covers() {
        CoverSystem made{.appLock = {.loop = loop, .verifier = verifier, .ownPID = 1}};
        made.makeSurface = [this](const CoverRequest& request, OrvelBlur::BlurBackend,
                                  std::function<void()> onClick) {
            clickCover = std::move(onClick);
            return std::make_unique<StubCover>(log, request.pid);
        };
        made.sources = {.windows = [this] { return windows; },
                        .windowNumbers =
                            [] {
                                return std::vector<std::int64_t>{80, 70};
                            },
                        .windowBounds = [](const auto&) { return std::map<std::int64_t, Rect>(); },
                        .displays =
                            [] {
                                return std::vector<Rect>{{0, 0, 800, 600}};
                            },
                        .activePID = [this] { return frontPID; },
                        .peekPoint = [] { return std::optional<Point>(); },
                        .mouseDown = [] { return false; },
                        .now = [this] { return loop.uptime(); },
                        .ownPID = 1};
        made.watcherReads = {.numbers = [] { return std::vector<std::int64_t>(); },
                             .bounds = [](const auto&) { return std::map<std::int64_t, Rect>(); },
                             .button = [] { return false; },
                             .option = [] { return false; },
                             .observe = [](const auto&) { return std::make_shared<int>(); }};
        made.badges = {
            .makePanel = [this](const Rect&,
                                int) { return std::make_unique<StubOverlayPanel>(badge); },
            .makeContent = [](const auto&...) { return nullptr; },
            .visibleFrame =
                [] {
                    return Rect{0, 0, 800, 600};
                },
            .scale = [] { return 1.0; }};
        auto& lock = made.appLock;
        lock.frontApp = [this] { return FrontApp{frontPID, fmt::format("app.{}", frontPID)}; };
        lock.appIdentity = [](std::int64_t pid) {
            return std::optional(OrvelCovers::AppIdentity{fmt::format("App {}", pid), nullptr});
        };
        lock.activateOrvel = [] {};
        lock.orvelIsActive = [] { return true; };
        lock.activateApp = [](std::int64_t) {};
        lock.hideApp = [](std::int64_t) {};
        lock.appIsActive = [](std::int64_t) { return false; };
        lock.biometricsAvailable = [] { return false; };
        lock.wallClock = [this] { return desktop.present; };
        made.running = [] {
            return std::vector<OrvelCovers::RunningApp>{{7, "app.7", "Seven"},
                                                        {8, "app.8", "Eight"}};
        };
        made.observeWorkspace = [this](OrvelSystem::Workspace::Events events) {
            workspace = std::move(events);
            return std::make_shared<int>();
        };
        return made;
    }

    AppSystem system() {
        OrvelLock::KioskSystem kiosk{.loop = loop, .ownPID = StubLockDesktop::ownPID};
        kiosk.frontmostApp = [] { return OrvelLock::AppHandle{99, 5}; };
        kiosk.setRegular = [] {};
        kiosk.setAccessory = [] {};
        kiosk.activate = [] {};
        kiosk.tryActivate = [this] { return grabsAreFree; };
        kiosk.setPresentationOptions = [this](std::uint32_t options) {
            log.push_back(options != 0 ? "desktop taken" : "desktop given back");
        };
        kiosk.activateApp = [this](const OrvelLock::AppHandle& previous) {
            log.push_back(fmt::format("activate {}", previous.window));
        };
        AppSystem made{.loop = loop,
                       .defaults = defaults,
                       .markers = markers,
                       .attemptFile = attempts(),
                       .verifier = verifier,
                       .hotkeys = hotkeys,
                       .displayAwake = awake,
                       .wallClock = [this] { return desktop.present; },
                       .kiosk = kiosk,
                       .covers = covers(),
                       .menu = menu(),
                       .updates = updates()};
        made.fullName = "Ada Lovelace";
        made.bootSession = thisBoot;
        made.accountFailures = [] { return std::nullopt; };
        made.biometricsAvailable = [this] { return desktop.sensor; };
        made.blurSupport = blurSupport;
        made.lockPresenter = [this](OrvelBlur::BlurBackend chosen) {
            backend = chosen;
            auto presenter = desktop.system();
            presenter.makeSurface = [this, make = presenter.makeSurface](const auto& display,
                                                                         const OverlayLook& shown) {
                look = shown;
                return make(display, shown);
            };
            return presenter;
        };
        made.darkAppearance = [] { return true; };
        made.reduceTransparency = [this] { return reduceTransparency; };
        made.engageMacOSLock = [this] { log.push_back("engageMacOSLock"); };
        made.screenIsLocked = [this] { return macIsLocked; };
        made.observeSession = [this](SessionHandlers handlers) {
            session = std::move(handlers);
            onObserved();
        };
        made.guardAvailable = [this] { return guardAvailable; };
        made.startGuard = [this] { log.push_back("startGuard"); };
        made.environment = environment;
        made.activateApp = [] {};
        made.log = [this](std::string_view line) { lines.emplace_back(line); };
        return made;
    }

    void launch() {
        app = std::make_unique<AppDelegate>(system());
        app->applicationDidFinishLaunching();
        loop.drain();
    }
    void lock() {
        app->lockNow(false);
        loop.drain();
        ASSERT_TRUE(app->isMacLocked());
    }
    long count(const std::string& call) const { return std::count(log.begin(), log.end(), call); }
    const OrvelUI::LockCardModel& card() { return *desktop.surfaces.at(1)->content->model; }
    void type() {
        auto& model = *desktop.surfaces.at(1)->content->model;
        model.type("secret");
        model.submit();
        loop.drain();
    }
    void submit(OrvelAuth::PasswordResult verdict) {
        type();
        verifier.verifying.arrive(std::move(verdict));
        loop.drain();
    }
};

TEST_F(AppTest, AHotkeyGoesInAndALockComesOut) {
    launch();
    hotkeys.press(Shortcut::lockMac());
    loop.drain();
    EXPECT_TRUE(app->isMacLocked());
    EXPECT_TRUE(app->macCovered());
    EXPECT_EQ(desktop.surfaces.at(1)->content->kind, LockContent::card);
    EXPECT_TRUE(markers.marker);
    // The record before the cover, the cover before the desktop.
    const auto at = [this](std::string_view call) {
        return std::find(log.begin(), log.end(), call) - log.begin();
    };
    EXPECT_LT(at("write"), at("1 show 28 0.28"));
    EXPECT_LT(at("1 show 28 0.28"), at("desktop taken"));

    submit(PasswordAccepted{});
    EXPECT_FALSE(app->isMacLocked());
    EXPECT_FALSE(app->macCovered());
    EXPECT_FALSE(markers.marker);
    EXPECT_THAT(log, Contains("activate 5")) << "the app that was in front comes back";
}

TEST_F(AppTest, WhileALockStartsOrRunsNoOtherRequestDoesAnything) {
    launch();
    std::vector<bool> answers;
    const auto answer = [&answers](bool covered) { answers.push_back(covered); };
    grabsAreFree = false;
    EXPECT_TRUE(app->lockNow(false, answer));
    EXPECT_FALSE(app->lockNow(false, answer)) << "asked for, not begun";
    loop.drain();
    EXPECT_FALSE(app->lockNow(false, answer)) << "covered, waiting for the desktop";
    EXPECT_THAT(answers, ElementsAre(false, false));
    grabsAreFree = true;
    loop.advance(0.05);
    EXPECT_THAT(answers, ElementsAre(false, false, true));

    hotkeys.press(Shortcut::lockMac());
    hotkeys.press(Shortcut::lockMac());
    app->open({"karvo://lock"});
    loop.drain();
    submit(PasswordRejected{});
    app->open({"karvo://lock"});
    loop.drain();
    EXPECT_EQ(count("write"), 1);
}

TEST_F(AppTest, InEveryPhaseOfALockARequestDoesNothing) {
    const std::vector<std::pair<const char*, std::function<void()>>> phases{
        {"verifying", [this] { type(); }},
        {"cooling down",
         [this] {
             for (int i = 0; i < 5; ++i) submit(PasswordRejected{});
         }},
        {"handed off", [this] { loop.advance(1801); }},
    };
    for (const auto& [phase, reach] : phases) {
        launch();
        lock();
        reach();
        log.clear();
        std::optional<bool> heard;
        EXPECT_FALSE(app->lockNow(true, [&heard](bool covered) { heard = covered; })) << phase;
        EXPECT_EQ(heard, false) << phase;
        app->open({"karvo://lock"});
        hotkeys.press(Shortcut::lockMac());
        loop.drain();
        EXPECT_THAT(log, testing::IsEmpty()) << phase;
        EXPECT_FALSE(app->applicationShouldTerminate(std::nullopt)) << phase;
        // A check that is under way outlives no session.
        if (verifier.verifying.waiting() > 0) verifier.verifying.arrive(PasswordAccepted{});
        loop.drain();
    }
}

TEST_F(AppTest, ALockThatEndsBeforeItHasTheDesktopIsToldAsNone) {
    launch();
    std::optional<bool> heard;
    grabsAreFree = false;
    app->lockNow(false, [&heard](bool covered) { heard = covered; });
    loop.advance(0.1);
    submit(PasswordAccepted{});
    EXPECT_FALSE(app->macCovered());
    EXPECT_FALSE(app->lockNow(false)) << "the one before is still at it";
    EXPECT_FALSE(heard);
    loop.advance(0.3);
    EXPECT_EQ(heard, false);
    EXPECT_EQ(count("engageMacOSLock"), 0);
    grabsAreFree = true;
    lock();
}

TEST_F(AppTest, AFingerUnlocks) {
    desktop.sensor = true;
    launch();
    lock();
    loop.advance(0.5);
    ASSERT_EQ(desktop.prompting.waiting(), 1U);
    desktop.prompting.arrive(OrvelAuth::BiometricSuccess{});
    loop.drain();
    EXPECT_FALSE(app->isMacLocked());
}

TEST_F(AppTest, OnlyALinkThatIsUnderstoodLocks) {
    launch();
    app->open({"other://lock", "karvo://sleep", "karvo:lock", "", "karvo://blur/maybe",
               "karvo://private/on"});
    loop.drain();
    EXPECT_FALSE(app->isMacLocked());
    app->open({"nonsense", "KARVO://LOCK/now?x=1"});
    loop.drain();
    EXPECT_TRUE(app->isMacLocked());
}

TEST_F(AppTest, AnInstantLockSkipsTheFadeOfThatLockAlone) {
    launch();
    app->lockNow(true);
    loop.drain();
    EXPECT_THAT(log, Contains("1 show 28 0"));
    submit(PasswordAccepted{});
    loop.advance(1);
    app->lockNow(false);
    loop.drain();
    EXPECT_THAT(log, Contains("1 show 28 0.28"));
}

TEST_F(AppTest, AQuitIsRefusedOnlyToTheUserOfALockedMac) {
    launch();
    struct Case {
        std::optional<std::uint32_t> code;
        bool whileLocked;
    };
    const Case cases[] = {{std::nullopt, false},
                          {0x6C6F676F, true},    // 'logo'
                          {0x72657374, true},    // 'rest'
                          {0x73687574, true},    // 'shut'
                          {0x78787878, false}};  // unknown: the user's
    for (const auto& [code, whileLocked] : cases)
        EXPECT_TRUE(app->applicationShouldTerminate(code));
    app->lockNow(false);
    loop.drain();
    for (const auto& [code, whileLocked] : cases)
        EXPECT_EQ(app->applicationShouldTerminate(code), whileLocked) << code.value_or(0);
    EXPECT_TRUE(markers.marker) << "for the next launch to find";
}

TEST_F(AppTest, ALockOfThisBootComesBackAndTheSystemsUnlockEndsIt) {
    markers.marker = LockMarker{desktop.present, std::string(thisBoot), 0};
    macIsLocked = true;
    app = std::make_unique<AppDelegate>(system());
    app->open({"karvo://lock"});  // nobody is there yet to do it
    app->applicationDidFinishLaunching();
    EXPECT_TRUE(app->resumesLock()) << "known before any window may open";
    loop.drain();
    EXPECT_TRUE(app->isMacLocked());
    EXPECT_EQ(count("write"), 1);
    session.macOSUnlocked();
    loop.drain();
    EXPECT_FALSE(app->isMacLocked());
    EXPECT_FALSE(markers.marker);
}

TEST_F(AppTest, ALockOfAnotherBootDoesNot) {
    markers.marker = LockMarker{desktop.present, "boot-0", 0};
    launch();
    EXPECT_FALSE(app->isMacLocked());
    EXPECT_FALSE(app->resumesLock());
}

TEST_F(AppTest, RejectedPasswordsAreKeptAndOldOnesForgotten) {
    const Date old = desktop.present - Seconds(AttemptLog::keepFor + 60);
    const Date recent = desktop.present - Seconds(3600);
    ASSERT_TRUE(AttemptLog({old, recent}).save(attempts()));
    launch();
    app->lockNow(false);
    loop.drain();
    submit(PasswordRejected{});
    submit(OrvelAuth::PasswordUnavailable{"no answer"});
    EXPECT_THAT(AttemptLog::load(attempts()).attempts(), ElementsAre(recent, desktop.present));
}

TEST_F(AppTest, WithoutAPlaceForTheRecordTheLockGoesOn) {
    std::filesystem::create_directory(attempts());
    launch();
    lock();
    submit(PasswordRejected{});
    EXPECT_TRUE(app->isMacLocked());
    submit(PasswordAccepted{});
    EXPECT_FALSE(app->isMacLocked());
}

TEST_F(AppTest, TheLookIsReadAtEachLockAndTheBlurIsChosenAtLaunch) {
    launch();
    EXPECT_EQ(backend, OrvelBlur::BlurBackend::skyLight);
    lock();
    EXPECT_FALSE(look->solid);
    submit(PasswordAccepted{});
    reduceTransparency = true;
    lock();
    EXPECT_TRUE(look->solid);
    submit(PasswordAccepted{});
    blurSupport.osMajor = 14;
    launch();
    EXPECT_EQ(backend, OrvelBlur::BlurBackend::visualEffect);
}

TEST_F(AppTest, TheUsersOwnShortcutTakesThePlaceOfTheUsualOne) {
    Preferences prefs;
    prefs.shortcuts.lockMac = Shortcut::fromStored("40:3:K");
    prefs.shortcuts.lockApp.reset();
    prefs.save(defaults);
    launch();
    EXPECT_EQ(hotkeys.numbersByKey.size(), 1U);
    hotkeys.press(*prefs.shortcuts.lockMac);
    loop.drain();
    EXPECT_TRUE(app->isMacLocked());
}

TEST_F(AppTest, NeverHandsOffWhenTheUserSaysSo) {
    TriggerSettings triggers;
    triggers.handOffAfter.reset();
    triggers.save(defaults);
    launch();
    lock();
    loop.advance(5000);
    EXPECT_EQ(count("engageMacOSLock"), 0);
    EXPECT_EQ(TriggerSettings::load(defaults), triggers) << "kept through the launch's own saving";
}

TEST_F(AppTest, TheSettingsReachWhomTheyAreFor) {
    Preferences prefs;
    prefs.lockStyle = LockStyle::ambient;
    prefs.showsClock = false;
    prefs.awayMessage = "Back at three";
    prefs.unlocksWithMacOS = false;
    prefs.keepsDisplaysAwake = true;
    prefs.save(defaults);
    TriggerSettings triggers;
    triggers.handOffAfter = 5;
    triggers.save(defaults);
    launch();
    app->lockNow(false);
    loop.drain();
    EXPECT_THAT(log, Contains("1 show 96 0.28"));
    EXPECT_FALSE(card().showsClock.get());
    EXPECT_EQ(card().awayMessage.get(), "Back at three");
    EXPECT_TRUE(awake.isHeld());
    session.macOSLocked();
    session.macOSUnlocked();
    loop.drain();
    EXPECT_TRUE(app->isMacLocked()) << "the system's unlock is not ours";
    loop.advance(4.9);
    EXPECT_EQ(count("engageMacOSLock"), 0);
    loop.advance(0.6);
    EXPECT_EQ(count("engageMacOSLock"), 1);

    session.macOSLocked();
    session.macOSUnlocked();
    loop.drain();
    submit(PasswordAccepted{});
    EXPECT_FALSE(app->isMacLocked());
    EXPECT_FALSE(awake.isHeld());
}

TEST_F(AppTest, WithoutAGuardTheLockIsHandedOverUnderItsCovers) {
    guardAvailable = false;
    launch();
    app->lockNow(false);
    loop.drain();
    EXPECT_THAT(log, Contains("engageMacOSLock"));
    EXPECT_THAT(log, Not(Contains("desktop taken")));
    EXPECT_TRUE(app->macCovered());
}

TEST_F(AppTest, TheGuardIsStartedUnlessTheEnvironmentForbidsIt) {
    launch();
    EXPECT_EQ(count("startGuard"), 1);
    environment["ORVEL_NO_GUARD"] = "";
    launch();
    EXPECT_EQ(count("startGuard"), 1);
}

TEST_F(AppTest, AShortcutThatAnotherAppHoldsIsReported) {
    hotkeys.refuses = true;
    launch();
    ASSERT_EQ(lines.size(), 2U) << "one for each shortcut of a fresh install";
    EXPECT_THAT(lines.front(), HasSubstr("Karvo: Lock Mac: "));
}

TEST_F(AppTest, EventsOutsideALockAreHarmless) {
    const auto tellAll = [this] {
        session.macOSLocked();
        session.macOSUnlocked();
        session.wake();
        session.screensChanged();
    };
    onObserved = tellAll;  // in the middle of the launch
    launch();
    tellAll();
    loop.drain();
    EXPECT_FALSE(app->isMacLocked());
    EXPECT_TRUE(desktop.surfaces.empty());
    EXPECT_EQ(loop.timerCount(), 0U) << "nothing runs while nothing is locked";

    // Later than the delegate: what it handed out finds it gone.
    app.reset();
    session.macOSUnlocked();
    session.screensChanged();
    hotkeys.press(Shortcut::lockMac());
    loop.drain();
}

TEST_F(AppTest, ALockedAppIsCoveredAtOnceAndKeepsTheProgramFromQuitting) {
    launch();
    EXPECT_TRUE(app->applicationShouldTerminate({}));
    hotkeys.press(Shortcut::lockApp());
    EXPECT_THAT(log, Contains("cover 8"));
    EXPECT_TRUE(badge.visible);
    EXPECT_FALSE(app->applicationShouldTerminate({}));
    EXPECT_TRUE(app->applicationShouldTerminate(0x6C6F676F)) << "a log-out goes through";

    // The lock of the whole Mac closes the badge, and the shortcut of one app waits meanwhile.
    clickCover();
    hotkeys.press(Shortcut::lockMac());
    loop.drain();
    hotkeys.press(Shortcut::lockApp());
    EXPECT_THAT(log, Not(Contains("cover 7")));

    workspace.terminated(8);
    EXPECT_THAT(log, Contains("uncover 8"));
    EXPECT_FALSE(badge.visible);
}

TEST_F(AppTest, PrivateAppsFollowTheAppInFrontAndTheURL) {
    defaults.setStringArray("privateApps", {"app.7", "app.9"});
    launch();
    EXPECT_THAT(log, Contains("cover 7"));
    frontPID = 7;
    workspace.activated(7);
    EXPECT_THAT(log, Contains("uncover 7"));
    log.clear();
    frontPID = 8;
    workspace.activated(8);
    EXPECT_THAT(log, Contains("cover 7"));
    app->open({"karvo://private/off"});
    EXPECT_THAT(log, Contains("uncover 7"));
    EXPECT_EQ(loop.timerCount(), 0U) << "nothing runs while nothing is protected";
    EXPECT_EQ(defaults.boolForKey("privateAppsEnabled"), false);
}

TEST_F(AppTest, TheMenuShowsAndDoesWhatTheProgramCan) {
    environment = {{"ORVEL_CHECK_UPDATES_NOW", ""}};
    launch();
    EXPECT_THAT(log, Contains("check for updates"));
    statusMenu->onWillOpen();
    auto& model = statusMenu->model();
    EXPECT_EQ(model.frontAppName.get(), "App 8");
    EXPECT_EQ(model.updateVersion.get(), "2.0");
    EXPECT_EQ(iconState, MenuBarIconState::rest);

    model.onLockFront();
    EXPECT_THAT(log, Contains("cover 8"));
    EXPECT_EQ(iconState, MenuBarIconState::partial);
    statusMenu->onWillOpen();
    EXPECT_EQ(model.lockedApps.get().size(), 1U);
    EXPECT_FALSE(model.canQuit());
    model.onInstallUpdate();
    EXPECT_THAT(log, Not(Contains("open package")));

    workspace.terminated(8);
    EXPECT_EQ(iconState, MenuBarIconState::rest);
    model.onInstallUpdate();
    EXPECT_THAT(log, Contains("open package"));
    model.onLockMac();
    loop.drain();
    EXPECT_EQ(iconState, MenuBarIconState::full);
}

}  // namespace
