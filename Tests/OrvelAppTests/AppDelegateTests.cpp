#include "AppFixture.h"

namespace {

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
        // Finish a pending check, so that it does not outlive its session.
        if (verifier.verifying.waiting() > 0) verifier.verifying.arrive(PasswordAccepted{});
        loop.drain();
    }
}

TEST_F(AppTest, ALockThatEndsBeforeItHasTheDesktopIsReportedAsNone) {
    launch();
    std::optional<bool> heard;
    grabsAreFree = false;
    app->lockNow(false, [&heard](bool covered) { heard = covered; });
    loop.advance(0.1);
    submit(PasswordAccepted{});
    EXPECT_FALSE(app->macCovered());
    EXPECT_FALSE(app->lockNow(false)) << "the lock before has not finished";
    EXPECT_FALSE(heard);
    loop.advance(0.3);
    EXPECT_EQ(heard, false);
    EXPECT_EQ(count("engageMacOSLock"), 0);
    grabsAreFree = true;
    lock();
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
                          {0x78787878, false}};  // unknown reason, so the user's own quit
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
    app->open({"karvo://lock"});  // ignored, since the launch has not finished
    app->applicationDidFinishLaunching();
    EXPECT_TRUE(app->resumesLock()) << "known before any window may open";
    loop.drain();
    EXPECT_TRUE(app->isMacLocked());
    EXPECT_EQ(count("write"), 1);
    EXPECT_THAT(log, Contains("startGuard, keeping one that runs"));
    session.macOSUnlocked();
    loop.drain();
    EXPECT_FALSE(app->isMacLocked());
    EXPECT_EQ(count("startGuard"), 1) << "no guard of an older version stays";
    EXPECT_FALSE(markers.marker);
}

TEST_F(AppTest, RejectedPasswordsAreKeptAndOldOnesForgotten) {
    const Date old = desktop.present - Seconds(AttemptLog::keepFor + 60);
    const Date recent = desktop.present - Seconds(3600);
    ASSERT_TRUE(AttemptLog({old, recent}).save(attempts()));
    launch();
    app->lockNow(false);
    loop.drain();
    submit(PasswordRejected{});
    submit(PasswordUnavailable{"no answer"});
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
    EXPECT_EQ(backend, BlurBackend::skyLight);
    lock();
    EXPECT_FALSE(look->solid);
    submit(PasswordAccepted{});
    reduceTransparency = true;
    lock();
    EXPECT_TRUE(look->solid);
    submit(PasswordAccepted{});
    blurSupport.osMajor = 14;
    launch();
    EXPECT_EQ(backend, BlurBackend::visualEffect);
}

TEST_F(AppTest, TheSettingsTakeEffect) {
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
    EXPECT_TRUE(app->isMacLocked()) << "the system's unlock does not end the lock";
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

TEST_F(AppTest, AnAccountThatAsksForMoreThanAPasswordIsLeftToTheDesktop) {
    passwordSuffices = false;
    launch();
    EXPECT_THAT(toasts, ElementsAre(StartsWith("Your desktop locks the screen")));
    bool covered = true;
    EXPECT_FALSE(app->lockNow(false, [&](bool did) { covered = did; }));
    loop.drain();
    EXPECT_FALSE(covered);
    EXPECT_FALSE(app->isMacLocked());
    EXPECT_EQ(count("engageMacOSLock"), 1);
    EXPECT_THAT(toasts, SizeIs(1)) << "the locker's own screen shows";

    lockerIsKnown = false;
    app->lockNow(false);
    EXPECT_EQ(count("engageMacOSLock"), 2);
    EXPECT_THAT(toasts.back(), StartsWith("No screen locker is running"));

    app->shortcutPressed(ShortcutSet::Action::lockApp);
    EXPECT_THAT(toasts.back(), StartsWith("Apps cannot be locked"));
    EXPECT_TRUE(app->applicationShouldTerminate({})) << "no app is locked";

    // A lock that comes back after a crash can only be handed off.
    markers.marker = LockMarker{desktop.present, std::string(thisBoot), 0};
    launch();
    EXPECT_TRUE(app->isMacLocked());
    EXPECT_EQ(count("engageMacOSLock"), 3);
    EXPECT_THAT(log, Not(Contains("desktop taken")));
}

TEST_F(AppTest, AFurtherQuestionDuringALockHandsItOff) {
    launch();
    authentication.moreWasAsked("One-time code: ");
    loop.drain();
    EXPECT_EQ(count("engageMacOSLock"), 0) << "nothing is locked";
    EXPECT_THAT(toasts.back(), testing::EndsWith("Password, a space and: One-time code"));
    lock();
    authentication.moreWasAsked("");
    loop.drain();
    EXPECT_EQ(card().awayMessage.get(), "Password, a space and the answer");
    EXPECT_EQ(count("engageMacOSLock"), 1);
    EXPECT_TRUE(app->isMacLocked());
}

TEST_F(AppTest, FingersThatLockTheSensorAreLoggedAndOneFailedAttemptOfTheLock) {
    launch();
    authentication.fingersLockedOut();
    EXPECT_THAT(lines, ElementsAre("Karvo: fingerprint: 5 fingers in a row did not match"));
    EXPECT_FALSE(std::filesystem::exists(attempts())) << "no lock of the whole Mac ran";
    lock();
    authentication.fingersLockedOut();
    EXPECT_THAT(AttemptLog::load(attempts()).attempts(), SizeIs(1));
}

TEST_F(AppTest, TheGuardIsStartedUnlessTheEnvironmentForbidsIt) {
    launch();
    EXPECT_EQ(count("startGuard"), 1);
    environment["ORVEL_NO_GUARD"] = "";
    launch();
    EXPECT_EQ(count("startGuard"), 1);
}

TEST_F(AppTest, AShortcutThatAnotherAppHoldsIsReported) {
    constexpr auto action = ShortcutSet::Action::lockMac;
    hotkeys.refuses = true;
    launch();
    app->reopen();
    const auto& notes = settings->preferences.shortcutNotes;
    EXPECT_EQ(notes.get().size(), 2U) << "one for each shortcut of a fresh install";
    EXPECT_THAT(notes.get().at(action), HasSubstr("Another app already uses this shortcut"));
    EXPECT_TRUE(settings->preferences.refusedNotes.get().contains(action));

    // The shortcut is registered again when it is free; notes about other shortcuts stay.
    hotkeys.refuses = false;
    auto others = notes.get();
    others[ShortcutSet::Action::lockApp] = "Something else.";
    settings->preferences.shortcutNotes.set(others);
    settings->preferences.onRecord(action);
    settings->preferences.onStopRecording();
    EXPECT_FALSE(notes.get().contains(action));
    EXPECT_EQ(notes.get().at(ShortcutSet::Action::lockApp), "Something else.");
}

TEST_F(AppTest, ALockedAppIsCoveredAtOnceAndKeepsTheProgramFromQuitting) {
    launch();
    EXPECT_TRUE(app->applicationShouldTerminate({}));
    hotkeys.press(Shortcut::lockApp());
    EXPECT_THAT(log, Contains("cover 8"));
    EXPECT_TRUE(badge.visible);
    EXPECT_FALSE(app->applicationShouldTerminate({}));
    EXPECT_TRUE(app->applicationShouldTerminate(0x6C6F676F)) << "a log-out goes through";

    // A lock of the whole Mac closes the badge, and the shortcut for one app does nothing until it
    // ends.
    clickCover();
    badgeModel->hasKeyboard.set(true);
    badgeModel->type("half");
    ASSERT_FALSE(badgeModel->password.get().empty());
    hotkeys.press(Shortcut::lockMac());
    EXPECT_TRUE(badgeModel->password.get().empty());
    loop.drain();
    hotkeys.press(Shortcut::lockApp());
    EXPECT_THAT(log, Not(Contains("cover 7")));

    workspace.terminated(8);
    EXPECT_THAT(log, Contains("uncover 8"));
    EXPECT_FALSE(badge.visible);
}

TEST_F(AppTest, APrivateAppThatStartsLaterIsCoveredAtOnce) {
    defaults.setStringArray("privateApps", {"app.9"});
    launch();
    running.push_back({9, "app.9", "Nine"});
    windows.push_back({90, 9, 0, {200, 0, 100, 100}});
    workspace.launched(9);
    EXPECT_THAT(log, Contains("cover 9"));
}

TEST_F(AppTest, OnlyAPeekThatTheUserWantsReveals) {
    defaults.setStringArray("privateApps", {"app.7"});
    launch();
    app->reopen();
    peek = Point{140, 140};
    const auto reveals = [this] {
        log.clear();
        workspace.activeSpaceChanged();
        return count("uncover 7") > 0;
    };
    EXPECT_TRUE(reveals());
    settings->preferences.change(&Preferences::peekWithOption, false);
    workspace.activeSpaceChanged();
    EXPECT_THAT(log, Contains("cover 7"));
    EXPECT_FALSE(reveals());
}

TEST_F(AppTest, PrivateAppsFollowTheAppInFrontAndTheURL) {
    defaults.setStringArray("privateApps", {"app.7", "app.9"});
    launch();
    // The rehearsal of the first lock.
    loop.advance(2);
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
    EXPECT_EQ(icon.state, MenuBarIconState::rest);

    model.onLockFront();
    EXPECT_THAT(log, Contains("cover 8"));
    EXPECT_EQ(icon.state, MenuBarIconState::partial);
    statusMenu->onWillOpen();
    EXPECT_EQ(model.lockedApps.get().size(), 1U);
    EXPECT_FALSE(model.canQuit());
    model.onInstallUpdate();
    EXPECT_THAT(log, Not(Contains("open package")));

    workspace.terminated(8);
    EXPECT_EQ(icon.state, MenuBarIconState::rest);
    model.onInstallUpdate();
    EXPECT_THAT(log, Contains("open package"));
    model.onLockMac();
    loop.drain();
    EXPECT_EQ(icon.state, MenuBarIconState::full);
}

}  // namespace
