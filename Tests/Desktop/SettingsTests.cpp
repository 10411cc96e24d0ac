// The Settings window and the first-run guide, operated with keys and clicks and read like a screen
// reader does.

#include "LockDesk.h"
#include "ScreenReader.h"

namespace {

/// A desktop on which no panel shows the program's icon, so Settings opens at the start.
struct SettingsDesk : LockDesk {
    explicit SettingsDesk(bool guideSeen = true) : reader(desktop) {
        Karvo::Options options;
        options.arguments = {};
        options.withGuide = !guideSeen;
        start(options);
    }

    std::string settings() { return textOf(desktop.configFolder() / "Karvo/settings.json"); }
    bool saves(const std::string& text) {
        return eventually([&] { return settings().find(text) != std::string::npos; });
    }
    void choosePane(const std::string& name) {
        // A pane that is fading out may still take the click.
        ASSERT_TRUE(eventually([&] {
            reader.click(name, "page tab");
            return reader.find(name, "heading").has_value();
        }));
    }

    ScreenReader reader;
};

TEST(Settings, WhatIsChosenIsSeenOnTheScreen) {
    SettingsDesk desk;
    auto& reader = desk.reader;
    auto& screen = desk.screen();
    ASSERT_TRUE(reader.shows("Karvo Settings"));
    // At the left of the card's top row, where nothing else is drawn.
    const auto showsTime = [&] {
        return screen.picture({onlyDisplay.width / 2 - 160, 5, 60, 20}).shareOf(0x000000) < 1;
    };
    const auto lockAndUnlock = [&](bool showingTime) {
        ASSERT_TRUE(desk.lockToCard());
        EXPECT_EQ(showsTime(), showingTime);
        desk.submit(Desktop::password);
        EXPECT_TRUE(eventually([&] { return !desk.hasCard(onlyDisplay); }));
    };
    lockAndUnlock(true);
    desk.choosePane("Lock");
    reader.click("Show the clock", "check box");
    ASSERT_TRUE(desk.saves(R"("showsClock": false)"));
    lockAndUnlock(false);
}

TEST(Settings, UninstallLeavesNothingBehindAndIsRefusedWhileLocked) {
    SettingsDesk desk;
    auto& reader = desk.reader;
    ASSERT_TRUE(reader.shows("Karvo Settings"));
    desk.choosePane("About");
    // The program is not installed here, so its icon is its own, as is the picture in the pane.
    const auto window = desk.screen().find("Karvo Settings");
    ASSERT_TRUE(window);
    EXPECT_TRUE(desk.screen().cardinal(*window, "_NET_WM_ICON"));
    EXPECT_TRUE(eventually([&] {
        return desk.screen().picture(desk.screen().areaOf(*window)).shareOf(0x000000) > 0;
    }));
    desk.desktop.keepPicture("about");
    ASSERT_TRUE(reader.shows("Uninstall Karvo…"));
    reader.click("Uninstall Karvo…", "button");
    ASSERT_TRUE(reader.shows("Uninstall Karvo?"));
    reader.click("Uninstall", "button");
    // Karvo does not delete the program's own file.
    ASSERT_TRUE(reader.shows("Almost done"));
    desk.screen().press({XK_Return});
    EXPECT_TRUE(eventually([&] { return !desk.karvo().process().isRunning(); }));
    EXPECT_TRUE(eventually([&] { return desk.karvo().guards().empty(); }));
    EXPECT_FALSE(std::filesystem::exists(desk.desktop.dataFolder() / "Karvo"));
    EXPECT_TRUE(desk.settings().empty() || desk.settings().find(':') == std::string::npos)
        << desk.settings();
}

TEST(Guide, LeadsThroughTheTrialToTheEnd) {
    SettingsDesk desk(false);
    auto& reader = desk.reader;
    auto& screen = desk.screen();
    ASSERT_TRUE(reader.shows("Welcome to Karvo"));
    desk.desktop.keepPicture("welcome");
    reader.click("Get started", "button");
    reader.click("Try it now", "button");
    ASSERT_TRUE(desk.cardSays(onlyDisplay, "enter your password"));
    desk.submit(Desktop::password);
    ASSERT_TRUE(reader.shows("That's it. You're protected."));
    EXPECT_TRUE(eventually([&] {
        return screen.textProperty(screen.activeWindow(), "_NET_WM_NAME") == "Welcome to Karvo";
    })) << "not the app before it";
    desk.desktop.keepPicture("tried");
    reader.click("Continue", "button");
    reader.click("Continue", "button");
    ASSERT_TRUE(reader.shows("You're all set"));
    desk.desktop.keepPicture("finish");
    reader.click("Done", "button");
    EXPECT_TRUE(desk.saves(R"("onboardingCompleted": true)"));
    EXPECT_TRUE(eventually(
        [&] { return !screen.find("Welcome to Karvo").has_value() || reader.read().size() < 2; }));
    EXPECT_TRUE(std::filesystem::exists(desk.desktop.configFolder() /
                                        "autostart/com.brindlewick.karvo.desktop"));
}

}  // namespace
