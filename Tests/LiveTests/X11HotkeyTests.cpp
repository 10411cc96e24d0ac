#include "Desktop/SampleWindow.h"
#include "Keyboard.h"

namespace {

constexpr std::int64_t command = 1;
constexpr std::int64_t option = 2;
constexpr std::int64_t control = 4;
constexpr std::int64_t shift = 8;
constexpr std::uint32_t keyL = 37;

constexpr std::uint16_t lockMask = XCB_MOD_MASK_LOCK;
constexpr std::uint16_t numMask = XCB_MOD_MASK_2;
constexpr std::uint16_t superMask = XCB_MOD_MASK_4;
constexpr std::uint16_t lockStates[] = {0, lockMask, lockMask | numMask, numMask};

using X11HotkeyTest = HotkeyDesktopTest;

TEST_F(X11HotkeyTest, firesInEveryStateOfTheLockKeys) {
    ASSERT_TRUE(add(shortcut(keyL, command)));
    for (const std::uint16_t locks : lockStates) {
        if ((keyboard.state() ^ locks) & lockMask) keyboard.press({Key::capsLock});
        if ((keyboard.state() ^ locks) & numMask) keyboard.press({Key::numLock});
        ASSERT_EQ(keyboard.state() & 0xFF, locks);
        EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 1) << locks;
    }
}

TEST_F(X11HotkeyTest, firesOnExactlyItsModifiersLeftOrRight) {
    int options = 0;
    ASSERT_TRUE(add(shortcut(keyL, command)));
    ASSERT_TRUE(center.registerHotkey(shortcut(keyL, command | option), [&options] { ++options; }));

    EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 1);
    EXPECT_EQ(firedBy({Key::rightSuper, Key::l}), 1);
    EXPECT_EQ(options, 0);
    for (const auto super : {Key::leftSuper, Key::rightSuper}) {
        for (const auto alt : {Key::leftAlt, Key::rightAlt})
            EXPECT_EQ(firedBy({super, alt, Key::l}), 0);
    }
    EXPECT_EQ(options, 4);

    EXPECT_EQ(firedBy({Key::l}), 0);
    EXPECT_EQ(firedBy({Key::leftAlt, Key::l}), 0);
    EXPECT_EQ(firedBy({Key::leftShift, Key::leftSuper, Key::l}), 0);
    EXPECT_EQ(firedBy({Key::leftControl, Key::leftSuper, Key::l}), 0);
    EXPECT_EQ(firedBy({Key::leftSuper, Key::k}), 0);
    EXPECT_EQ(options, 4);

    ASSERT_TRUE(add(shortcut(keyL, control | shift)));
    EXPECT_EQ(firedBy({Key::leftShift, Key::leftControl, Key::l}), 1);
}

TEST_F(X11HotkeyTest, firesOnceWhileAMenuHoldsTheKeyboard) {
    SampleWindow menu(display(), {0, 0, 100, 100}, 0x30507a, SampleWindow::Kind::popup);
    ASSERT_TRUE(add(shortcut(keyL, command)));
    for (const std::uint16_t locks : lockStates) {
        if ((keyboard.state() ^ locks) & lockMask) keyboard.press({Key::capsLock});
        if ((keyboard.state() ^ locks) & numMask) keyboard.press({Key::numLock});
        ASSERT_EQ(keyboard.state() & 0xFF, locks);
        ASSERT_TRUE(eventually([&] { return menu.grab(); }));
        const int before = fired;
        keyboard.down(Key::leftSuper);
        keyboard.down(Key::l);
        EXPECT_TRUE(eventually([&] { return fired == before + 1; })) << locks;
        // Long enough for the server to repeat the key.
        EXPECT_TRUE(staysFired(before + 1)) << locks;
        keyboard.up(Key::l);
        keyboard.up(Key::leftSuper);
        menu.ungrab();
        settle();
        EXPECT_EQ(fired, before + 1) << locks;
    }
}

TEST_F(X11HotkeyTest, firesWithAltHeldUnlessThatIsAnotherShortcut) {
    ASSERT_TRUE(add(shortcut(keyL, command)));
    EXPECT_EQ(firedBy({Key::leftAlt, Key::leftSuper, Key::l}), 1);
    ASSERT_TRUE(add(shortcut(40, command)));
    int options = 0;
    const auto number =
        center.registerHotkey(shortcut(keyL, command | option), [&options] { ++options; });
    EXPECT_EQ(firedBy({Key::leftAlt, Key::leftSuper, Key::l}), 0);
    EXPECT_EQ(options, 1);
    center.unregister(*number);
    EXPECT_EQ(firedBy({Key::leftAlt, Key::leftSuper, Key::l}), 1);
}

TEST_F(X11HotkeyTest, leavesTheCombinationWithAltToAProgramThatHasIt) {
    ASSERT_TRUE(keyboard.grabKey(Key::l, superMask | XCB_MOD_MASK_1));
    ASSERT_TRUE(add(shortcut(keyL, command)));
    EXPECT_EQ(firedBy({Key::leftAlt, Key::leftSuper, Key::l}), 0);
    EXPECT_EQ(keyboard.heard(), 1);
    EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 1);
}

TEST_F(X11HotkeyTest, theKeyReachesNoOtherProgramUntilItIsUnregistered) {
    SampleWindow other(display(), {0, 0, 100, 100}, 0x30507a, SampleWindow::Kind::popup);
    other.takeFocus();
    ASSERT_TRUE(eventually([&] { return other.hasFocus(); }));

    const auto number = add(shortcut(keyL, command));
    EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 1);
    ASSERT_TRUE(eventually([&] { return other.keyPresses() >= 1; }));
    EXPECT_EQ(other.keyPresses(), 1) << "the modifier";

    center.unregister(*number);
    EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 0);
    EXPECT_TRUE(eventually([&] { return other.keyPresses() == 3; }));
}

TEST_F(X11HotkeyTest, oneStateOfTheLocksTakenByAnotherRefusesAllAndKeepsNothing) {
    for (const std::uint16_t taken : lockStates) {
        ASSERT_TRUE(keyboard.grabKey(Key::l, superMask | taken));
        EXPECT_EQ(add(shortcut(keyL, command)), std::nullopt) << taken;
        if (taken == 0) {
            EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 0);
            EXPECT_EQ(keyboard.heard(), 1) << "its owner does not hear it";
        }

        Keyboard third(display());
        for (const std::uint16_t locks : lockStates)
            EXPECT_EQ(third.grabKey(Key::l, superMask | locks), locks != taken) << locks;
        third.ungrabKey(Key::l, XCB_MOD_MASK_ANY);
        keyboard.ungrabKey(Key::l, superMask | taken);
    }
    ASSERT_TRUE(add(shortcut(keyL, command)));
    EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 1);
}

TEST_F(X11HotkeyTest, aHeldKeyFiresOnce) {
    ASSERT_TRUE(add(shortcut(keyL, command)));
    const KeyPresses presses(Key::l);
    keyboard.down(Key::leftSuper);
    keyboard.down(Key::l);
    EXPECT_TRUE(eventually([&] { return presses.count() >= 1; }));
    EXPECT_TRUE(staysFired(1));
    keyboard.up(Key::l);
    keyboard.up(Key::leftSuper);
    settle();
    EXPECT_EQ(fired, 1);
    EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 1);
}

TEST_F(X11HotkeyTest, followsModifiersThatMoveToOtherBits) {
    ASSERT_TRUE(add(shortcut(keyL, command)));
    // Num Lock gets Super's old bit, Super gets Mod3, and Alt gets Mod5.
    keyboard.setModifiers({0, 0, Key::leftSuper, Key::numLock, Key::leftAlt});
    ASSERT_TRUE(eventually([&] { return !keyboard.couldGrabKey(Key::l, XCB_MOD_MASK_3); }));
    EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 1);
    keyboard.press({Key::numLock});
    EXPECT_EQ(keyboard.state() & 0xFF, XCB_MOD_MASK_4);
    EXPECT_EQ(firedBy({Key::l}), 0);
    EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 1);
    keyboard.press({Key::numLock});
    EXPECT_TRUE(keyboard.couldGrabKey(Key::l, XCB_MOD_MASK_2)) << "the old bits are still grabbed";

    // Without a key for Super there is no Command modifier.
    keyboard.setModifiers({Key::leftAlt, Key::numLock, 0, 0, 0});
    ASSERT_TRUE(eventually([&] { return keyboard.couldGrabKey(Key::l, XCB_MOD_MASK_3); }));
    EXPECT_EQ(add(shortcut(40, command)), std::nullopt);
    keyboard.setModifiers({Key::leftAlt, Key::numLock, 0, Key::leftSuper, 0});
    ASSERT_TRUE(eventually([&] { return !keyboard.couldGrabKey(Key::l, superMask); }));
    EXPECT_EQ(firedBy({Key::leftSuper, Key::l}), 1);
}

TEST_F(X11HotkeyTest, followsLayoutsByTheKeysPlace) {
    // 12 is the position of the key that has Q in the US layout and A in the French one.
    ASSERT_TRUE(add(shortcut(12, command)));
    setLayout({"-layout", "fr"});
    EXPECT_EQ(firedBy({Key::leftSuper, Key::q}), 1);

    setLayout({"-layout", "us", "-option", "altwin:swap_alt_win"});
    ASSERT_TRUE(eventually([&] { return firedBy({Key::leftAlt, Key::q}) == 1; }));
    EXPECT_EQ(firedBy({Key::leftSuper, Key::q}), 0);

    // The second of two layouts.
    setLayout({"-layout", "us,ru", "-option", "", "-option", "grp:caps_toggle"});
    ASSERT_TRUE(eventually([&] { return firedBy({Key::leftSuper, Key::q}) == 1; }));
    keyboard.press({Key::capsLock});
    ASSERT_EQ(keyboard.state() >> 13, 1);
    EXPECT_EQ(firedBy({Key::leftSuper, Key::q}), 1);
    keyboard.press({Key::capsLock});
}

TEST_F(X11HotkeyTest, thePlacesAreWhereTheServersKeyMapNamesThem) {
    const std::string text = runTool({"xkbcomp", "-w0", display(), "-"});
    const KeyCodes codes = X11KeyMap::read(X11::shared()).keyCodes();
    for (const KeyPlace& place : KeyCodes::places()) {
        std::smatch found;
        const std::string name =
            std::regex_replace(std::string(place.xkbName), std::regex(R"(\+)"), R"(\+)");
        ASSERT_TRUE(std::regex_search(text, found, std::regex("<" + name + "> = ([0-9]+);")))
            << place.xkbName;
        EXPECT_EQ(codes.xKeycode(place.macKeyCode), std::stoi(found[1])) << place.xkbName;
        EXPECT_EQ(place.evdevCode + 8, std::stoi(found[1])) << place.xkbName;
    }
}

TEST_F(X11HotkeyTest, whatKeysTypeIgnoresAllModifiersButShift) {
    struct Case {
        std::initializer_list<std::string> layout;
        xcb_keycode_t key;
        std::uint32_t state;
        std::optional<std::string> text;
    };
    constexpr std::uint32_t secondLayout = 1 << 13;
    const Case cases[] = {
        {{"-layout", "us"}, Key::l, 0, "l"},
        {{"-layout", "us"}, Key::l, XCB_MOD_MASK_SHIFT, "L"},
        {{"-layout", "us"}, Key::l, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_CONTROL | superMask, "l"},
        {{"-layout", "us"}, 12, XCB_MOD_MASK_SHIFT, "#"},
        // The keypad's digit, without and with Num Lock.
        {{"-layout", "us"}, Key::keypad7, 0, "7"},
        {{"-layout", "us"}, Key::keypad7, numMask, "7"},
        {{"-layout", "us"}, Key::home, 0, {}},
        {{"-layout", "us"}, Key::deleteForward, 0, {}},
        {{"-layout", "us"}, Key::enter, 0, {}},
        {{"-layout", "us"}, Key::leftSuper, 0, {}},
        {{"-layout", "us"}, Key::f12, 0, {}},
        {{"-layout", "fr"}, Key::q, 0, "a"},
        // A dead key is represented by its accent.
        {{"-layout", "fr"}, 34, 0, "^"},
        {{"-layout", "us,ru"}, Key::l, secondLayout, "д"},
    };
    for (const Case& each : cases) {
        setLayout(each.layout);
        EXPECT_EQ(X11KeyMap::read(X11::shared()).charactersIgnoringModifiers(each.key, each.state),
                  each.text)
            << int{each.key} << " with " << each.state;
    }
}

}  // namespace
