// The screen is locked while another program has grabbed the keyboard or the pointer.

#include "LockDesk.h"
#include "SessionLocker.h"

namespace DesktopTest {
namespace {

/// A desktop with a program that has a menu or something similar open.
struct MenuDesk : LockDesk {
    explicit MenuDesk(bool realDevices) : LockDesk(optionsFor(realDevices)) {}
    static Desktop::Options optionsFor(bool realDevices) {
        auto options = oneDisplay();
        options.realDevices = realDevices;
        return options;
    }

    /// Starts a program and waits until its window is active.
    Process& open(const Arguments& arguments, const std::string& nameOrClass) {
        auto& process = desktop.start(arguments, nameOrClass);
        if (!eventually([&] { return (client = screen().find(nameOrClass)).has_value(); }) ||
            !eventually([&] {
                screen().activate(*client);
                return eventually([&] { return screen().activeWindow() == *client; },
                                  std::chrono::seconds(1));
            }))
            throw std::runtime_error(nameOrClass + " did not start");
        return process;
    }
    Area place() { return screen().areaOf(*client); }
    /// The file that the editor saves to and the terminal writes to.
    std::filesystem::path file() { return desktop.folder() / "typed"; }

    void openEditor() {
        // Stop the cursor from blinking, because pictures are compared.
        std::filesystem::create_directories(desktop.configFolder() / "gtk-3.0");
        writeText(desktop.configFolder() / "gtk-3.0/settings.ini",
                  "[Settings]\ngtk-cursor-blink = false\ngtk-menu-bar-accel = F10\n");
        open({"mousepad", "--disable-server", file()}, "mousepad");
    }

    std::optional<xcb_window_t> client;
    Process* program = nullptr;
    SampleWindow* menu = nullptr;
};

struct Menu {
    const char* name;
    /// Starts the program.
    void (*begin)(MenuDesk&);
    /// Opens the menu, or does something else that grabs the keyboard or the pointer.
    void (*open)(MenuDesk&);
    /// Releases what was still held down when the screen was locked.
    void (*letGo)(MenuDesk&) = [](MenuDesk&) {};
    /// Types "abc" and returns whether the program receives it.
    bool (*hears)(MenuDesk&) = [](MenuDesk& desk) { return desk.typesIntoWindow(); };
    /// Lock by URL, because held keys would turn the shortcut into a different one.
    bool byURL = false;
};

bool editorHears(MenuDesk& desk) {
    desk.screen().type("abc");
    desk.screen().press({XK_Control_L, XK_s});
    return eventually([&] { return textOf(desk.file()).find("abc") != std::string::npos; });
}

class Menus : public testing::TestWithParam<std::tuple<Menu, bool>> {};

TEST_P(Menus, DoNotKeepTheScreenFromBeingLocked) {
    const auto& [menu, realDevices] = GetParam();
    MenuDesk desk(realDevices);
    auto& screen = desk.screen();
    const SessionLocker locker(desk.desktop);
    const int requests = desk.desktop.logind().lockRequests();
    menu.begin(desk);
    auto& karvo = desk.start();
    desk.remember();
    menu.open(desk);
    // Wait for the picture before testing for a grab, because that test may take the grab from the
    // program.
    ASSERT_TRUE(eventually([&] { return !desk.isOpen() || desk.menu; }));
    ASSERT_TRUE(eventually([&] {
        const auto picture = screen.picture();
        return stays([&] { return screen.picture().pixels == picture.pixels; },
                     std::chrono::milliseconds(200));
    }));
    ASSERT_TRUE(
        eventually([&] { return screen.keyboardIsGrabbed() || screen.pointerIsGrabbed(); }));
    desk.desktop.keepPicture("open");
    const int keys = desk.menu ? desk.menu->keyPresses() : desk.window().keyPresses();

    if (menu.byURL) {
        karvo.startAgain({"karvo://lock"});
        ASSERT_TRUE(eventually([&] { return desk.isCovered(); }));
    } else {
        ASSERT_TRUE(desk.lockUnseen());
    }
    EXPECT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
    menu.letGo(desk);
    // Keys must reach only the card.
    screen.press({XK_Super_L, XK_r});
    EXPECT_TRUE(desk.submitWrong());
    EXPECT_TRUE(desk.staysCovered());
    desk.submit(Desktop::password);
    EXPECT_TRUE(eventually([&] { return desk.showsDesktop(); }));
    EXPECT_TRUE(eventually([&] { return !std::filesystem::exists(karvo.markerFile()); }));
    EXPECT_EQ(desk.desktop.logind().lockRequests(), requests) << "handed off";
    EXPECT_EQ(desk.desktop.shortcutRuns(), 0);
    if (desk.menu) {
        // Super before the shortcut is complete, two keys without a symbol, and the one Escape that
        // closes menus.
        EXPECT_LE(desk.menu->keyPresses(), keys + 4);
        desk.menu->ungrab();
    }
    EXPECT_TRUE(eventually([&] { return screen.held().empty(); })) << screen.held();
    EXPECT_TRUE(
        eventually([&] { return !screen.keyboardIsGrabbed() && !screen.pointerIsGrabbed(); }));
    EXPECT_TRUE(menu.hears(desk));
    EXPECT_EQ(screen.held(), "");
}

const Menu menus[] = {
    {"Gtk", [](MenuDesk& desk) { desk.openEditor(); },
     [](MenuDesk& desk) { desk.screen().press({XK_F10}); }, [](MenuDesk&) {}, editorHears},
    {"Qt", [](MenuDesk& desk) { desk.program = &desk.open({KARVO_QT_MENU}, "QtMenu"); },
     [](MenuDesk& desk) {
         desk.screen().press({XK_Alt_L, XK_m});
     },
     [](MenuDesk&) {},
     [](MenuDesk& desk) {
         // A menu bar that Alt has opened keeps the keyboard until a second Escape.
         desk.screen().press({XK_Escape});
         desk.screen().type("abc");
         return eventually([&] { return desk.program->output().ends_with("\nabc\n"); });
     }},
    {"WindowManager", [](MenuDesk&) {},
     [](MenuDesk& desk) {
         desk.screen().movePointer(1100, 300);
         desk.screen().buttonDown(3);
         desk.screen().buttonUp(3);
     }},
    {"XtermWithButtonHeld",
     [](MenuDesk& desk) {
         desk.open({"xterm", "-geometry", "40x10+700+250", "-e", "sh", "-c",
                    "cat >'" + desk.file().string() + "'"},
                   "xterm");
     },
     [](MenuDesk& desk) {
         const Area place = desk.place();
         desk.screen().movePointer(place.x + 60, place.y + 60);
         desk.screen().keyDown(XK_Control_L);
         desk.screen().buttonDown(1);
     },
     [](MenuDesk& desk) {
         desk.screen().buttonUp(1);
         desk.screen().keyUp(XK_Control_L);
     },
     [](MenuDesk& desk) {
         desk.screen().type("abc");
         desk.screen().press({XK_Return});
         return eventually([&] { return textOf(desk.file()).ends_with("abc\n"); });
     },
     true},
    {"TextDrag",
     [](MenuDesk& desk) {
         desk.openEditor();
         desk.screen().type("dragdragdrag");
     },
     [](MenuDesk& desk) {
         auto& screen = desk.screen();
         const Area place = desk.place();
         // The first line of text, below the menu and a warning.
         const int y = place.y + 55;
         screen.movePointer(place.x + 30, y);
         screen.press({XK_Control_L, XK_a});
         const auto selected = [&] {
             return screen.picture({place.x + 4, y, 60, 1}).shareOf(0xffffff) < 0.5;
         };
         eventually(selected);
         screen.buttonDown(1);
         for (int i = 1; i < 8; ++i) screen.movePointer(place.x + 30 + 10 * i, y + 10 * i);
     },
     [](MenuDesk& desk) { desk.screen().buttonUp(1); }, editorHears},
    {"HeldAltTab",
     [](MenuDesk& desk) {
         desk.desktop.addWindow({700, 430, 200, 150}, 0x708090);
     },
     [](MenuDesk& desk) {
         desk.screen().keyDown(XK_Alt_L);
         desk.screen().press({XK_Tab});
     },
     [](MenuDesk& desk) { desk.screen().keyUp(XK_Alt_L); },
     [](MenuDesk& desk) {
         desk.window().takeFocus();
         return desk.typesIntoWindow();
     },
     true},
    {"KeptForEver",
     [](MenuDesk& desk) {
         desk.menu =
             &desk.desktop.addWindow({700, 430, 120, 160}, 0xe0e0d0, SampleWindow::Kind::popup);
     },
     [](MenuDesk& desk) { ASSERT_TRUE(desk.menu->grab()); }},
};

INSTANTIATE_TEST_SUITE_P(All, Menus, testing::Combine(testing::ValuesIn(menus), testing::Bool()),
                         [](const auto& menu) {
                             const bool realDevices = std::get<1>(menu.param);
                             return std::string(std::get<0>(menu.param).name) +
                                    (realDevices ? "" : "WithXTest");
                         });

class KeptGrabs : public testing::TestWithParam<bool> {};

// No hand-off succeeds while they last, since a locker cannot have the keyboard either.
TEST_P(KeptGrabs, GiveNoKeyToTheirOwner) {
    MenuDesk desk(true);
    desk.setSettings(R"({"handOffAfter": 2})");
    auto& desktop = desk.desktop;
    desk.start();
    auto& owner = desktop.addWindow({700, 430, 120, 160}, 0xe0e0d0, SampleWindow::Kind::popup);
    desk.remember();
    const bool freezes = GetParam();
    ASSERT_TRUE(owner.grab(freezes));
    // The server reads the modifiers of a shortcut from the core keyboard, which may be frozen.
    ASSERT_TRUE(freezes ? desk.lockByURL() : desk.lockUnseen());
    ASSERT_TRUE(desk.submitWrong());
    // A grab that begins during the lock looks like a loss of the focus to a toolkit.
    owner.ungrab();
    owner.grab(freezes);
    ASSERT_TRUE(desk.submitWrong());
    // It received the modifier of the shortcut.
    const int keys = owner.keyPresses();
    const auto pressFor = [&](std::chrono::seconds time) {
        return stays(
            [&] {
                desk.screen().press({XK_F7});
                return desk.isCovered() && owner.keyPresses() == keys;
            },
            time);
    };
    EXPECT_TRUE(pressFor(std::chrono::seconds(4)));
    EXPECT_GT(desktop.logind().lockRequests(), 0) << "not handed off";
    for (const pid_t app : desk.karvo().apps()) ::kill(app, SIGKILL);
    EXPECT_TRUE(pressFor(std::chrono::seconds(4)));
    EXPECT_TRUE(desk.unlockWhateverAsks());
    owner.ungrab();
    EXPECT_EQ(owner.keyPresses(), keys);
    EXPECT_TRUE(eventually([&] { return desk.screen().held().empty(); })) << desk.screen().held();
    EXPECT_TRUE(desk.typesIntoWindow());
}

INSTANTIATE_TEST_SUITE_P(All, KeptGrabs, testing::Bool(),
                         [](const auto& freezes) { return freezes.param ? "Frozen" : "Running"; });

class LateKeyboards : public testing::TestWithParam<bool> {};

TEST_P(LateKeyboards, LockAndAreTheLocks) {
    const bool menuIsOpen = GetParam();
    MenuDesk desk(true);
    constexpr int late = 1;
    auto& desktop = desk.desktop;
    desktop.plugKeyboard(late, false);
    desk.start();
    auto& menu = desktop.addWindow({700, 430, 120, 160}, 0xe0e0d0, SampleWindow::Kind::popup);
    desk.remember();
    if (menuIsOpen) {
        ASSERT_TRUE(menu.grab());
    }
    desktop.plugKeyboard(late, true);
    desktop.devices().useKeyboard(late);
    ASSERT_TRUE(desk.lockUnseen());
    ASSERT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
    const auto heard = [&] { return menu.keyPresses() + desk.window().keyPresses(); };
    // Until the server's event reaches the lock, the keys of the device go where it was attached.
    const auto isTaken = [&] {
        const int before = heard();
        desk.screen().press({XK_F7});
        return stays([&] { return heard() == before; }, std::chrono::milliseconds(100));
    };

    desktop.plugKeyboard(late, false);
    desktop.plugKeyboard(late, true);
    EXPECT_TRUE(eventually(isTaken));
    int keys = heard();
    EXPECT_TRUE(desk.submitWrong());
    EXPECT_EQ(heard(), keys);
    desktop.moveKeyboard(late, desk.window().id());
    EXPECT_TRUE(eventually(isTaken));
    keys = heard();
    EXPECT_TRUE(desk.submitWrong());
    desktop.moveKeyboardBack(late);
    EXPECT_TRUE(desk.staysCovered());
    EXPECT_EQ(heard(), keys);
    // The server would crash if the grab of a disabled device ended.
    desktop.plugKeyboard(late, false);
    desktop.devices().useKeyboard(0);
    EXPECT_TRUE(desk.unlock());
    EXPECT_EQ(desktop.logind().lockRequests(), 0) << "handed off";
    desktop.plugKeyboard(late, true);
    desktop.devices().useKeyboard(late);
    menu.ungrab();
    EXPECT_TRUE(eventually([&] { return desk.screen().held().empty(); })) << desk.screen().held();
    EXPECT_TRUE(desk.typesIntoWindow());
}

INSTANTIATE_TEST_SUITE_P(All, LateKeyboards, testing::Bool(), [](const auto& menu) {
    return menu.param ? "WithAMenu" : "WithoutAMenu";
});

}  // namespace
}  // namespace DesktopTest
