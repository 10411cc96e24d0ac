// Every way to trigger an action except the lock's own shortcut, and the effect of workspace
// events.

#include "AppFixture.h"

namespace {

const Shortcut quickBlurKeys{11, "B", Shortcut::Modifiers::control};
const Shortcut focusBlurKeys{3, "F", Shortcut::Modifiers::control};

struct AppModeTest : AppTest {
    AppModeTest() {
        Preferences prefs;
        prefs.shortcuts.quickBlur = quickBlurKeys;
        prefs.shortcuts.focusBlur = focusBlurKeys;
        prefs.save(defaults);
    }
    /// Returns the logged calls of one kind since the last call, and clears the log.
    CallLog heard(std::string_view name) {
        CallLog calls;
        for (const auto& call : std::exchange(log, {}))
            if (call.starts_with(name)) calls.push_back(call);
        return calls;
    }
};

TEST_F(AppModeTest, AnOpenPanelFollowsEveryChange) {
    launch();
    icon.item->onClick({});
    auto& panel = statusMenu->model();
    const auto chosen = [&panel] {
        std::vector<std::string> names;
        for (const auto& choice : panel.privateChoices.get())
            if (choice.chosen) names.push_back(choice.name);
        return names;
    };
    const auto listed = [&panel] { return panel.privateChoices.get().size(); };
    const std::pair<std::function<void()>, std::function<bool()>> steps[] = {
        {panel.onToggleFocusBlur, [&] { return panel.focusBlurOn.get(); }},
        {[this] { hotkeys.press(focusBlurKeys); }, [&] { return !panel.focusBlurOn.get(); }},
        {[this] { hotkeys.press(quickBlurKeys); }, [&] { return panel.quickBlurOn.get(); }},
        {panel.onToggleQuickBlur, [&] { return !panel.quickBlurOn.get(); }},
        {[this] { app->open({"karvo://blur/on"}); }, [&] { return panel.quickBlurOn.get(); }},
        {[this] { app->open({"karvo://blur/off"}); }, [&] { return !panel.quickBlurOn.get(); }},
        {[this] { app->open({"karvo://focus"}); }, [&] { return panel.focusBlurOn.get(); }},
        {panel.onTogglePrivateApps, [&] { return !panel.privateAppsOn.get(); }},
        {panel.onTogglePrivateApps, [&] { return panel.privateAppsOn.get(); }},
        {[&] { panel.onTogglePrivateApp("app.7"); },
         [&] { return chosen() == std::vector<std::string>{"Seven"}; }},
        {[this] { hotkeys.press(Shortcut::lockApp()); },
         [&] { return panel.lockedApps.get().size() == 1 && !panel.frontAppName.get(); }},
        {[this] { workspace.terminated(8); }, [&] { return panel.lockedApps.get().empty(); }},
        {[this] {
             running.push_back({9, "app.9", "Nine"});
             workspace.launched(9);
         },
         [&] { return listed() == 3; }},
        {[this] {
             app->reopen();
             settings->preferences.onClearShortcut(ShortcutSet::Action::quickBlur);
         },
         [&] { return !panel.quickBlurShortcut.get(); }},
        {[this] {
             settings->about.onCheck();
             loop.drain();
         },
         [&] { return panel.updateVersion.get().has_value(); }},
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        const auto& [change, isShown] = steps[i];
        ASSERT_FALSE(isShown()) << "before step " << i;
        change();
        EXPECT_TRUE(isShown()) << "after step " << i;
    }
}

TEST_F(AppModeTest, ABlurDuringALockLeavesTheFrontAloneUntilItsEnd) {
    launch();
    hotkeys.press(quickBlurKeys);
    lock();
    hotkeys.press(quickBlurKeys);
    loop.drain();
    EXPECT_THAT(log, Not(Contains("front 8"))) << "revealed under the lock";
    submit(PasswordAccepted{});
    loop.drain();
    EXPECT_EQ(std::ranges::count(log, "front 8"), 1);

    // A Blur Screen that is on when the lock ends keeps the keyboard.
    hotkeys.press(quickBlurKeys);
    lock();
    log.clear();
    submit(PasswordAccepted{});
    EXPECT_THAT(log, Not(Contains("activate 5")));
}

TEST_F(AppModeTest, TheCornerActsAsItIsSetAndMovesWithTheSettings) {
    launch();
    app->reopen();
    EXPECT_THAT(corners, IsEmpty());
    auto& model = settings->preferences;
    const auto visit = [this](double seconds = 0.25) {
        ASSERT_EQ(corners.size(), 1U);
        corners.front()->onEnter();
        loop.advance(seconds);
        corners.front()->onExit();
    };
    model.pick(TriggerSettings::Corner::bottomRight);
    model.change(&TriggerSettings::hotCornerAction, TriggerSettings::CornerAction::quickBlur);
    log.clear();
    visit(0.1);
    visit(0.2);
    EXPECT_THAT(heard("blur"), IsEmpty()) << "each visit is too short";
    visit(5);
    visit();
    EXPECT_THAT(heard("blur"), ElementsAre("blur shown")) << "the corner never reveals";
    EXPECT_EQ(corners.front()->rect, (Rect{799, 599, 1, 1}));
    EXPECT_EQ(TriggerSettings::load(defaults).hotCorner, TriggerSettings::Corner::bottomRight);

    model.change(&TriggerSettings::hotCornerAction, TriggerSettings::CornerAction::lock);
    visit();
    EXPECT_TRUE(app->isMacLocked());
    model.pick(TriggerSettings::Corner::bottomRight);
    EXPECT_THAT(corners, IsEmpty());
}

TEST_F(AppModeTest, WhatTheWorkspaceTellsReachesCoversAndBlur) {
    launch();
    hotkeys.press(focusBlurKeys);
    const auto samples = [this](const std::function<void()>& event) {
        orders = 0;
        event();
        return orders > 0;
    };
    EXPECT_TRUE(samples([this] { workspace.activated(7); }));
    EXPECT_TRUE(samples([this] { workspace.activated(0); })) << "of an unknown app";
    EXPECT_TRUE(samples([this] { workspace.activeSpaceChanged(); }));
    EXPECT_TRUE(samples([this] { workspace.unhidden(); }));
    EXPECT_TRUE(samples([this] { session.wake(); }));
    EXPECT_TRUE(samples([this] { session.screensChanged(); }));
}

TEST_F(AppModeTest, ALockIsHeardAndItsFailedAttemptsAreToldOnce) {
    Preferences prefs = Preferences::load(defaults);
    prefs.soundsOn = true;
    prefs.save(defaults);
    launch();
    lock();
    EXPECT_THAT(log, Contains(testing::StartsWith("say ")));
    EXPECT_EQ(std::ranges::count_if(log, [](auto& call) { return call.starts_with("play"); }), 1);
    for (int i = 0; i < 3; ++i) submit(PasswordRejected{});
    submit(PasswordAccepted{});
    ASSERT_EQ(toasts.size(), 1U);
    EXPECT_THAT(toasts.back(), testing::StartsWith("3 failed attempts while you were away"));

    desktop.present += std::chrono::seconds(1);
    lock();
    log.clear();
    interfaceSounds = false;
    submit(PasswordAccepted{});
    EXPECT_EQ(toasts.size(), 1U) << "none failed";
    EXPECT_THAT(heard("play"), IsEmpty());
}

}  // namespace
