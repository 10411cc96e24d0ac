// The program's ordinary windows under a real window manager.

#include <QAccessible>
#include <QApplication>
#include <cstdlib>
#include <memory>

#include <gmock/gmock.h>

#include "OrvelModes/Dialogs.h"
#include "OrvelModes/OnboardingWindowController.h"
#include "OrvelModes/SettingsWindowController.h"
#include "OrvelModes/ShortcutRecorder.h"

#include "Desktop/Eventually.h"
#include "Desktop/Process.h"
#include "Desktop/SampleWindow.h"
#include "Desktop/Screen.h"
#include "Desktop/XServer.h"
#include "Support/TemporaryFolder.h"

using namespace OrvelModes;
using OrvelUI::SettingsPane;
using testing::ElementsAre;

namespace {

std::unique_ptr<DesktopTest::Screen> sharedScreen;
std::string testDisplay;

struct WindowDesktopTest : testing::Test {
    DesktopTest::Screen& screen = *sharedScreen;

    static bool eventually(const std::function<bool()>& holds) {
        return DesktopTest::eventually([&] {
            QCoreApplication::processEvents();
            // Which waits for a loop that the test does not run.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return holds();
        });
    }
    bool isActive(const std::string& title) {
        return eventually([&] {
            const auto window = screen.activeWindow();
            return window != 0 && screen.textProperty(window, "_NET_WM_NAME") == title;
        });
    }
    void closeActive() {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = screen.activeWindow();
        event.type = screen.atom("_NET_CLOSE_WINDOW");
        xcb_send_event(screen.connection(), 0, screen.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&event));
        screen.sync();
    }
    /// Whether the first stands above the second.
    bool isAbove(xcb_window_t first, xcb_window_t second) {
        const auto order = screen.mappedWindows();
        return std::ranges::find(order, screen.frameOf(first)) >
               std::ranges::find(order, screen.frameOf(second));
    }
    static std::size_t widgets() {
        return static_cast<std::size_t>(QApplication::allWidgets().size());
    }
};

}  // namespace

TEST_F(WindowDesktopTest, SettingsComeAndGoAndKeepTheirPlace) {
    SettingsWindowController settings(SettingsWindowSystem::live());
    settings.show(SettingsPane::lock);
    ASSERT_TRUE(isActive("Karvo Settings"));
    const auto full = widgets();
    screen.press({XK_Tab});
    screen.press({XK_Down});
    ASSERT_TRUE(eventually([&] { return settings.model.pane.get() == SettingsPane::blur; }));
    closeActive();
    ASSERT_TRUE(eventually([&] { return !settings.window()->isVisible() && widgets() < full / 4; }))
        << "a closed window keeps nothing";
    settings.show();
    ASSERT_TRUE(isActive("Karvo Settings"));
    EXPECT_EQ(settings.model.pane.get(), SettingsPane::blur);
    screen.press({XK_Control_L, XK_w});
    EXPECT_TRUE(eventually([&] { return !settings.window()->isVisible(); }));
}

TEST_F(WindowDesktopTest, SettingsRecordWhatIsPressedInThem) {
    using Decision = OrvelCore::RecorderDecision;
    SettingsWindowController settings(SettingsWindowSystem::live());
    ShortcutRecorder recorder(
        ShortcutRecorder::Hooks::live([&] { return settings.window(); }, [] {}, [] {}));
    std::vector<Decision> decisions;
    recorder.onDecision = [&](auto, const Decision& decision) { decisions.push_back(decision); };
    settings.show(SettingsPane::shortcuts);
    ASSERT_TRUE(isActive("Karvo Settings"));
    recorder.start(OrvelCore::ShortcutSet::Action::quickBlur);
    screen.press({XK_Control_L, XK_w});
    ASSERT_TRUE(eventually([&] { return !decisions.empty(); }));
    EXPECT_TRUE(settings.window()->isVisible()) << "what is recorded does nothing else";
    ASSERT_TRUE(std::holds_alternative<OrvelCore::RecorderDecisions::Record>(decisions[0]));
    recorder.start(OrvelCore::ShortcutSet::Action::quickBlur);
    closeActive();
    ASSERT_TRUE(eventually([&] { return decisions.size() == 2; }));
    EXPECT_TRUE(std::holds_alternative<OrvelCore::RecorderDecisions::Cancel>(decisions[1]));
}

TEST_F(WindowDesktopTest, TheGuideFloatsUntilItIsInFrontAndTellsOfItsClosing) {
    DesktopTest::SampleWindow other(testDisplay, {50, 50, 500, 400}, {},
                                    DesktopTest::SampleWindow::Kind::normal, "Other");
    other.map();
    const auto isOther = [&] {
        return eventually([&] { return screen.activeWindow() == other.id(); });
    };
    // A window manager that is still starting does not give a window the focus by itself.
    ASSERT_TRUE(eventually([&] {
        screen.activate(other.id());
        return screen.activeWindow() == other.id();
    }));
    auto guide = std::make_unique<OnboardingWindowController>(OnboardingWindowSystem::live());
    int closed = 0;
    guide->onClosedEarly = [&] {
        ++closed;
        guide.reset();
    };
    guide->show();
    ASSERT_TRUE(isActive("Welcome to Karvo"));
    const auto window = screen.activeWindow();
    screen.activate(other.id());
    ASSERT_TRUE(isOther());
    EXPECT_TRUE(eventually([&] { return isAbove(other.id(), window); })) << "it floats no more";
    guide->bringBack();
    ASSERT_TRUE(isActive("Welcome to Karvo"));
    closeActive();
    EXPECT_TRUE(eventually([&] { return closed == 1 && guide == nullptr; }));
    EXPECT_TRUE(isOther());
}

TEST_F(WindowDesktopTest, AnAlertIsAnsweredOnce) {
    std::vector<std::size_t> answers;
    const auto ask = [&] {
        Dialogs::alert(OrvelUI::Alert::uninstallQuestion(),
                       [&](std::size_t button) { answers.push_back(button); });
        return isActive("Uninstall Karvo?");
    };
    ASSERT_TRUE(ask());
    screen.press({XK_Escape});
    ASSERT_TRUE(eventually([&] { return answers.size() == 1; }));
    ASSERT_TRUE(ask());
    closeActive();
    ASSERT_TRUE(eventually([&] { return answers.size() == 2; }));
    ASSERT_TRUE(ask());
    screen.press({XK_Tab});
    screen.press({XK_space});
    ASSERT_TRUE(eventually([&] { return answers.size() == 3; }));
    EXPECT_THAT(answers, ElementsAre(1, 1, 0));
    EXPECT_TRUE(eventually([] { return widgets() == 0; })) << "dialogs leave nothing behind";
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    const TemporaryFolder folder;
    const DesktopTest::XServer server;
    const DesktopTest::Environment environment{
        {"PATH", "/usr/bin:/bin"}, {"HOME", folder.path().string()}, {"DISPLAY", server.display()}};
    const DesktopTest::Process manager({"openbox", "--sm-disable"}, environment);
    for (const char* name : {"DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR"}) unsetenv(name);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    qputenv("DISPLAY", QByteArray::fromStdString(server.display()));
    qputenv("QT_QPA_PLATFORM", "xcb");
    testDisplay = server.display();
    sharedScreen = std::make_unique<DesktopTest::Screen>(testDisplay);
    DesktopTest::eventually([] {
        return !sharedScreen->textProperty(sharedScreen->root(), "_OPENBOX_VERSION").empty() ||
               !sharedScreen->textProperty(sharedScreen->root(), "_OB_VERSION").empty();
    });
    const QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QAccessible::setActive(true);
    const int result = RUN_ALL_TESTS();
    sharedScreen.reset();
    return result;
}
