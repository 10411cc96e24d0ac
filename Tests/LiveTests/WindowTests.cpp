// The program's ordinary windows under a real window manager.

#include <QApplication>

#include "OrvelModes/Windows/Dialogs.h"

#include "Live.h"

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
    static std::size_t widgets() {
        return static_cast<std::size_t>(QApplication::allWidgets().size());
    }
};

}  // namespace

TEST_F(WindowDesktopTest, AnAlertIsAnsweredOnce) {
    std::vector<std::size_t> answers;
    const auto ask = [&] {
        Dialogs::alert(Alert::uninstallQuestion(),
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
