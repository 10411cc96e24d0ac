#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QShortcut>
#include <QWidget>

#include "OrvelModes/Windows/ShortcutRegistrar.h"
#include "OrvelModes/X11/ShortcutRecorderHooks.h"

#include "Desktop/SampleWindow.h"
#include "Keyboard.h"

using Action = ShortcutSet::Action;

namespace {

struct RecorderHooksTest : HotkeyDesktopTest {
    QWidget window;
    QLineEdit field{&window};
    ShortcutRegistrar registrar{
        [this](Action, const Shortcut& wanted, std::function<void()> handler) {
            const auto number = center.registerHotkey(wanted, std::move(handler));
            std::function<void()> unregister;
            if (number) unregister = [this, number] { center.unregister(*number); };
            return unregister;
        }};
    ShortcutRecorder recorder{ShortcutRecorderHooks::live(
        [this] { return &window; }, [this] { registrar.pause(); }, [this] { registrar.resume(); })};
    std::vector<RecorderDecision> decisions;

    void SetUp() override {
        ShortcutSet set;
        set.lockApp.reset();
        registrar.apply(set);
        registrar.onPressed = [this](Action) { ++fired; };
        recorder.onDecision = [this](Action action, const RecorderDecision& decision) {
            decisions.push_back(decision);
            if (const auto* record = std::get_if<RecorderDecisions::Record>(&decision)) {
                ShortcutSet changed;
                changed.lockApp.reset();
                changed[action] = record->shortcut;
                registrar.apply(changed);
            }
        };
        window.resize(300, 200);
        window.show();
        activate();
    }

    void activate() {
        ASSERT_TRUE(eventually([this] {
            keyboard.focus(static_cast<xcb_window_t>(window.winId()));
            return window.isActiveWindow() && qApp->focusWidget() == &field;
        }));
    }
    bool decided() {
        return eventually([this] { return !decisions.empty(); });
    }
};

TEST_F(RecorderHooksTest, recordsACombinationThatTheWindowNeverSees) {
    int acted = 0;
    QShortcut own(QKeySequence("Ctrl+K"), &window);
    QObject::connect(&own, &QShortcut::activated, [&] { ++acted; });
    keyboard.press({Key::leftControl, Key::k});
    ASSERT_TRUE(eventually([&] { return acted == 1; }));
    keyboard.press({Key::l});
    ASSERT_TRUE(eventually([&] { return field.text() == "l"; }));

    recorder.start(Action::quickBlur);
    keyboard.press({Key::leftControl, Key::rightSuper, Key::leftShift, Key::leftAlt, Key::k});
    ASSERT_TRUE(decided());
    EXPECT_THAT(decisions, ElementsAre(RecorderDecisions::Record{{40, "K", {15}}}));

    recorder.start(Action::quickBlur);
    keyboard.press({Key::leftControl, Key::k});
    ASSERT_TRUE(eventually([&] { return decisions.size() == 2; }));
    EXPECT_EQ(decisions[1], RecorderDecision(RecorderDecisions::Record{{40, "K", {4}}}));
    EXPECT_EQ(acted, 1);
    settle();
    EXPECT_EQ(field.text(), "l");

    // The keys are now a global shortcut, and other keys reach the window again.
    EXPECT_EQ(firedBy({Key::leftControl, Key::k}), 1);
    keyboard.press({Key::d});
    EXPECT_TRUE(eventually([&] { return field.text() == "ld"; }));
}

TEST_F(RecorderHooksTest, theKeyStillHeldDownDoesNotFireWhatItRecorded) {
    recorder.start(Action::lockMac);
    const KeyPresses presses(Key::k);
    keyboard.down(Key::leftSuper);
    keyboard.down(Key::k);
    ASSERT_TRUE(eventually([&] { return presses.count() >= 1; }));
    EXPECT_THAT(decisions, ElementsAre(RecorderDecisions::Record{{40, "K", {1}}}));
    keyboard.up(Key::k);
    keyboard.up(Key::leftSuper);
    settle();
    EXPECT_EQ(fired, 0);
    EXPECT_EQ(firedBy({Key::leftSuper, Key::k}), 1);
}

TEST_F(RecorderHooksTest, endsWithTheWindowItsFocusAndTheApp) {
    SampleWindow program(display(), {0, 300, 100, 100}, 0x30507a, SampleWindow::Kind::popup);
    QWidget sibling;
    sibling.show();
    const std::pair<const char*, std::function<void()>> ends[] = {
        {"closed", [&] { window.close(); }},
        {"another program", [&] { program.takeFocus(); }},
        {"another window of the app",
         [&] { keyboard.focus(static_cast<xcb_window_t>(sibling.winId())); }},
    };
    for (const auto& [name, end] : ends) {
        window.show();
        activate();
        decisions.clear();
        recorder.start(Action::lockApp);
        end();
        EXPECT_TRUE(decided()) << name;
        EXPECT_THAT(decisions, ElementsAre(RecorderDecisions::Cancel{})) << name;
        EXPECT_EQ(recorder.recording(), std::nullopt) << name;
        EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 1) << name;
    }
}

}  // namespace
