#include "AppFixture.h"

namespace {

/// For each way to hide something, `show` ends it, which allows the program to restart.
TEST_F(AppTest, AReplacedProgramRestartsOnceNothingIsLockedOrBlurred) {
    using State = ProgramFile::State;
    const auto restarts = [this] { return Contains("restart "); };
    struct Case {
        const char* what;
        std::function<void()> hide;
        std::function<void()> show;
    };
    const Case cases[] = {
        {"nothing", [] {}, [] {}},
        {"the lock", [this] { lock(); }, [this] { submit(PasswordAccepted{}); }},
        {"a locked app", [this] { hotkeys.press(Shortcut::lockApp()); },
         [this] { workspace.terminated(8); }},
        {"the blurred screen", [this] { app->open({"karvo://blur/on"}); },
         [this] { app->open({"karvo://blur/off"}); }},
    };
    for (const auto& [what, hide, show] : cases) {
        programFile = State::current;
        launch();
        hide();
        log.clear();
        app->programFileChanged();
        loop.drain();
        EXPECT_THAT(log, Not(restarts())) << "the signal alone restarts nothing: " << what;

        programFile = State::replaced;
        app->programFileChanged();
        loop.drain();
        const bool waits = what != std::string("nothing");
        EXPECT_EQ(std::ranges::count(log, "restart "), waits ? 0 : 1) << what;
        EXPECT_EQ(statusMenu->model().restartWaits.get(), waits) << what;
        show();
        loop.drain();
        EXPECT_THAT(log, restarts()) << what;
        app.reset();
    }
}

TEST_F(AppTest, TheRestartKeepsFocusBlurAndARemovedProgramEndsWithItsGuard) {
    using State = ProgramFile::State;
    launch();
    app->open({"karvo://focus/on"});
    programFile = State::replaced;
    app->programFileChanged();
    EXPECT_THAT(log, Contains("restart karvo://focus/on"));

    hotkeys.press(Shortcut::lockApp());
    programFile = State::gone;
    app->programFileChanged();
    loop.drain();
    EXPECT_THAT(log, Not(Contains("quit")));
    EXPECT_FALSE(statusMenu->model().restartWaits.get());
    log.clear();
    workspace.terminated(8);
    loop.drain();
    EXPECT_THAT(log, testing::IsSupersetOf({"guard unregistered", "quit"}));
}

}  // namespace
