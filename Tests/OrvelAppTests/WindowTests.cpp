// How the program fills Settings, the first-run guide and the uninstaller, and handles their
// callbacks.

#include "AppFixture.h"

namespace {

std::vector<std::string> names(const std::vector<AppRow>& rows) {
    std::vector<std::string> result;
    for (const auto& row : rows) result.push_back(row.name);
    return result;
}

struct WindowTest : AppTest {
    void openGuide() {
        defaults.remove("onboardingCompleted");
        launch();
        ASSERT_NE(guide, nullptr);
    }
    PreferencesModel& openSettings() {
        launch();
        app->reopen();
        return settings->preferences;
    }
};

TEST_F(WindowTest, TheFirstScreen) {
    struct Row {
        const char* launch;
        bool guideDone;
        bool asLoginItem;
        bool wantsIcon;
        std::optional<bool> iconShown;
        bool marker;
        CallLog after;
    };
    const Row rows[] = {
        {"by the user", true, false, true, true, false, {}},
        {"never seen", false, true, true, true, false, {"guide shown"}},
        {"icon hidden", true, false, false, false, false, {"settings shown"}},
        {"icon hidden, at login", true, true, false, false, false, {}},
        {"icon evicted", true, false, true, false, false, {"settings shown"}},
        {"icon not known", true, false, true, std::nullopt, false, {}},
        {"icon evicted, at login", true, true, true, false, false, {}},
        {"over a lock", false, false, true, false, true, {}},
        {"over a lock, icon hidden", true, false, false, false, true, {}},
    };
    for (const auto& row : rows) {
        defaults.removeAll();
        if (row.guideDone) OnboardingRecord::markDone(defaults);
        Preferences prefs;
        prefs.showsMenuBarIcon = row.wantsIcon;
        prefs.save(defaults);
        asLoginItem = row.asLoginItem;
        icon.shown = row.iconShown;
        markers.marker.reset();
        if (row.marker) markers.marker = LockMarker{desktop.present, std::string(thisBoot), 0};
        log.clear();
        launch();
        loop.advance(1.0);
        EXPECT_EQ(app->isMacLocked(), row.marker) << row.launch;
        std::erase_if(log, [](const auto& call) { return !call.ends_with(" shown"); });
        EXPECT_EQ(log, row.after) << row.launch;
    }
}

TEST_F(WindowTest, TheEndOfTheGuideIsCarriedOut) {
    installed = {"com.apple.mail", "com.hnc.Discord"};
    openGuide();
    EXPECT_THAT(names(guide->apps.get()),
                ElementsAre("name of com.apple.mail", "name of com.hnc.Discord"));
    loop.advance(1.0);
    EXPECT_EQ(guide->iconShown.get(), true);
    guide->primary();
    guide->secondary();
    guide->toggle("com.hnc.Discord");
    guide->primary();
    guide->primary();
    loop.drain();
    EXPECT_THAT(defaults.stringArrayForKey("privateApps").value(), ElementsAre("com.hnc.Discord"));
    EXPECT_TRUE(opensAtLogin);
    EXPECT_TRUE(OnboardingRecord::isDone(defaults));
    EXPECT_EQ(icon.clicks, 1) << "shows where the menu is";
    app->reopen();
    EXPECT_EQ(log.back(), "settings shown") << "the guide is over";
}

TEST_F(WindowTest, AGuideClosedByHandIsOverToo) {
    openGuide();
    log.clear();
    app->reopen();
    EXPECT_THAT(log, ElementsAre("guide shown"));
    guideWindow->close();
    loop.drain();
    EXPECT_TRUE(OnboardingRecord::isDone(defaults));
    EXPECT_FALSE(opensAtLogin);
    app->reopen();
    EXPECT_EQ(log.back(), "settings shown");
}

TEST_F(WindowTest, SettingsShowWhatIsAndChangeIt) {
    opensAtLogin = true;
    auto& model = openSettings();
    EXPECT_TRUE(model.launchAtLogin.get());
    EXPECT_THAT(model.macOSCorners.get(), ElementsAre(TriggerSettings::Corner::topLeft));
    EXPECT_EQ(model.now.get(), desktop.present);

    model.change(&Preferences::awayMessage, std::string("Back at 3:30"));
    EXPECT_EQ(Preferences::load(defaults).awayMessage, "Back at 3:30");
    lock();
    EXPECT_EQ(card().awayMessage.get(), "Back at 3:30");
    submit(PasswordRejected{});
    EXPECT_EQ(model.attempts.get().size(), 1U);
    model.onPreviewLock();
    EXPECT_EQ(count("1 show 28 0.28"), 1) << "no preview during a lock";
    submit(PasswordAccepted{});
    desktop.present += Seconds(AttemptLog::keepFor + 60);
    EXPECT_EQ(model.attempts.get().size(), 1U);
    app->reopen();
    EXPECT_THAT(model.attempts.get(), IsEmpty()) << "the texts speak of the last days";
    model.onPreviewLock();
    EXPECT_EQ(count("1 show 28 0.28"), 2);
    EXPECT_FALSE(app->macCovered());

    loginItemError = std::make_error_code(std::errc::read_only_file_system);
    model.onSetLaunchAtLogin(false);
    EXPECT_TRUE(model.launchAtLogin.get()) << "what the system says";
    EXPECT_THAT(lines, Contains(testing::StartsWith("Karvo: launch at login: ")));
}

TEST_F(WindowTest, PrivateAppsAreAddedOnceAndListedByName) {
    installed = {"app.7"};
    auto& model = openSettings();
    EXPECT_THAT(names(model.addableApps.get()), ElementsAre("app.8", "name of app.7"));
    model.onAddApp("app.7");
    model.onAddApp("app.7");
    EXPECT_THAT(log, Contains("cover 7"));
    EXPECT_THAT(names(model.privateApps.get()), ElementsAre("name of app.7"));
    EXPECT_THAT(names(model.addableApps.get()), ElementsAre("app.8"));
    EXPECT_EQ(icon.state, MenuBarIconState::partial);
    model.onChooseFromApplications();
    chooseApps({"app.7", "app.9"});
    EXPECT_THAT(names(model.privateApps.get()), ElementsAre("name of app.7", "app.9"));
    model.onRemoveApp("app.9");
    model.onRemoveApp("app.9");
    EXPECT_THAT(names(model.privateApps.get()), ElementsAre("name of app.7"));
    statusMenu->onAddPrivateApps();
    EXPECT_EQ(settings->pane.get(), SettingsPane::privateApps);
}

TEST_F(WindowTest, AboutTellsOfUpdatesAndNothingInstallsOverALock) {
    openSettings();
    auto& about = settings->about;
    EXPECT_THAT(about.version.get(), testing::MatchesRegex(".+ \\([0-9]+\\)"));
    about.onCheck();
    loop.drain();
    EXPECT_TRUE(about.updateReady.get());
    EXPECT_THAT(about.updateStatus.get(), testing::HasSubstr("2.0"));
    about.onSetAutomatic(false);
    EXPECT_EQ(defaults.boolForKey("updatesAutomatic"), false);
    about.onEmail();
    EXPECT_THAT(log.back(), testing::StartsWith("open mailto:"));
    about.onCancelCheck();
    EXPECT_EQ(log.back(), "cancel check");

    hotkeys.press(Shortcut::lockApp());
    about.onInstall();
    about.onUninstall();
    answerAlert(0);
    loop.drain();
    EXPECT_THAT(toasts, testing::SizeIs(2));
    EXPECT_THAT(toasts, testing::Each(testing::StartsWith("Unlock your apps first")));
    EXPECT_THAT(log, Not(Contains("open package")));
    EXPECT_THAT(log, Not(Contains("guard unregistered")));
}

TEST_F(WindowTest, UninstallAsksFirstAndSaysWhatIsLeft) {
    openSettings();
    settings->about.onUninstall();
    answerAlert(1);
    loop.drain();
    EXPECT_THAT(log, Not(Contains("guard unregistered")));
    trashWorks = false;
    settings->about.onUninstall();
    answerAlert(0);
    loop.drain();
    EXPECT_EQ(log.back(), "Almost done");
    EXPECT_FALSE(OnboardingRecord::isDone(defaults)) << "the settings are gone";
    answerAlert(0);
    EXPECT_EQ(log.back(), "quit");
}

TEST_F(WindowTest, AnUninstallThatWaitsForTheGuard) {
    openSettings();
    const auto confirm = [this] {
        settings->about.onUninstall();
        answerAlert(0);
        loop.drain();
    };
    guardUnregistered.answer.reset();
    confirm();
    confirm();
    EXPECT_EQ(count("guard unregistered"), 1) << "one at a time";
    lock();
    log.clear();
    guardUnregistered.arrive(true);
    loop.drain();
    EXPECT_TRUE(OnboardingRecord::isDone(defaults)) << "nothing is removed under a lock";
    EXPECT_THAT(log, ElementsAre("startGuard, keeping one that runs"))
        << "the lock needs its guard";
    submit(PasswordAccepted{});
    confirm();
    log.clear();
    guardUnregistered.arrive(true);
    loop.drain();
    EXPECT_THAT(log, ElementsAre("login item removed", "folder removed", "quit"));
    EXPECT_FALSE(OnboardingRecord::isDone(defaults));
}

}  // namespace
