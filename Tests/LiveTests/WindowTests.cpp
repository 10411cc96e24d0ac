// The program's ordinary windows under a real window manager.

#include <QApplication>

#include "OrvelModes/Windows/Dialogs.h"
#include "OrvelModes/Windows/OnboardingWindowController.h"
#include "OrvelModes/Windows/SettingsWindowController.h"

#include "Desktop/SampleWindow.h"
#include "Live.h"

using namespace OrvelModes;
using OrvelUI::SettingsPane;

namespace {

struct WindowDesktopTest : LiveTest {
    WindowDesktopTest() { startWindowManager(); }

    bool isActive(const std::string& title) {
        return eventually([&] {
            const auto window = screen().activeWindow();
            return window != 0 && screen().textProperty(window, "_NET_WM_NAME") == title;
        });
    }
    void closeActive() { screen().ask(screen().activeWindow(), "_NET_CLOSE_WINDOW", 0); }
    /// Whether `first` is above `second`.
    bool isAbove(xcb_window_t first, xcb_window_t second) {
        const auto order = screen().mappedWindows();
        return std::ranges::find(order, screen().frameOf(first)) >
               std::ranges::find(order, screen().frameOf(second));
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
    screen().press({XK_Tab});
    screen().press({XK_Down});
    ASSERT_TRUE(eventually([&] { return settings.model.pane.get() == SettingsPane::blur; }));
    closeActive();
    ASSERT_TRUE(eventually([&] { return !settings.window()->isVisible() && widgets() < full / 4; }))
        << "a closed window keeps nothing";
    settings.show();
    ASSERT_TRUE(isActive("Karvo Settings"));
    EXPECT_EQ(settings.model.pane.get(), SettingsPane::blur);
    screen().press({XK_Control_L, XK_w});
    EXPECT_TRUE(eventually([&] { return !settings.window()->isVisible(); }));
}

TEST_F(WindowDesktopTest, TheGuideFloatsUntilItIsInFrontAndTellsOfItsClosing) {
    DesktopTest::SampleWindow other(display(), {50, 50, 500, 400}, {},
                                    DesktopTest::SampleWindow::Kind::normal, "Other");
    other.map();
    const auto isOther = [&] {
        return eventually([&] { return screen().activeWindow() == other.id(); });
    };
    // A window manager that is still starting does not focus a new window.
    ASSERT_TRUE(eventually([&] {
        screen().activate(other.id());
        return screen().activeWindow() == other.id();
    }));
    auto guide = std::make_unique<OnboardingWindowController>(OnboardingWindowSystem::live());
    int closed = 0;
    guide->onClosedEarly = [&] {
        ++closed;
        guide.reset();
    };
    guide->show();
    ASSERT_TRUE(isActive("Welcome to Karvo"));
    const auto window = screen().activeWindow();
    screen().activate(other.id());
    ASSERT_TRUE(isOther());
    EXPECT_TRUE(eventually([&] { return isAbove(other.id(), window); })) << "it no longer floats";
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
    screen().press({XK_Escape});
    ASSERT_TRUE(eventually([&] { return answers.size() == 1; }));
    ASSERT_TRUE(ask());
    closeActive();
    ASSERT_TRUE(eventually([&] { return answers.size() == 2; }));
    ASSERT_TRUE(ask());
    screen().press({XK_Tab});
    screen().press({XK_space});
    ASSERT_TRUE(eventually([&] { return answers.size() == 3; }));
    EXPECT_THAT(answers, ElementsAre(1, 1, 0));
    EXPECT_TRUE(eventually([] { return widgets() == 0; })) << "dialogs leave nothing behind";
}
