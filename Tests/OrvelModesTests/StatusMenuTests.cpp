#include "OrvelModes/StatusItem/MenuPanelFeed.h"
#include "OrvelModes/StatusItem/StatusItemPlace.h"
#include "OrvelModes/StatusItem/StatusMenu.h"

#include "Support/MenuChoices.h"

namespace {

constexpr auto command = Shortcut::Modifiers::command;
constexpr auto option = Shortcut::Modifiers::option;

struct FeedTest : testing::Test {
    MenuPanelModel model;
    MenuPanelFeed::Sources sources{
        .nameForBundleID = [](const std::string& id) -> std::optional<std::string> {
            if (id == "org.notes") return "Notes";
            return std::nullopt;
        }};
};

TEST_F(FeedTest, OffersToLockTheAppInFrontUnlessItIsExcludedOrLocked) {
    struct Case {
        std::optional<RunningApp> front;
        bool locks;
    };
    sources.locked = {{RunningApp{5, "org.locked", "Locked"}, {}}};
    for (const auto& [front, locks] :
         {Case{RunningApp{4, "org.mail", "Mail"}, true}, Case{std::nullopt, false},
          Case{RunningApp{4, std::nullopt, "Bare"}, false},
          Case{RunningApp{4, "com.brindlewick.karvo", "Karvo"}, false},
          Case{RunningApp{5, "org.locked", "Locked"}, false}}) {
        sources.front = front;
        EXPECT_EQ(MenuPanelFeed::fill(model, sources),
                  locks ? std::optional<std::int64_t>(front->pid) : std::nullopt);
        EXPECT_EQ(model.frontAppName.get(), locks ? std::optional(front->name) : std::nullopt);
    }
}

TEST_F(FeedTest, ListsEachAppOnceByNameAsPeopleSort) {
    const Date since = dateFromSecondsSince1970(1000);
    sources.locked = {{RunningApp{3, "org.c", "App 10"}, since},
                      {RunningApp{1, "org.a", "App 2"}, {}},
                      {RunningApp{2, "org.b", "App 10"}, {}}};
    sources.running = {RunningApp{1, "org.mail", "Mail"}, RunningApp{2, "org.files", "Files"},
                       RunningApp{3, "org.files", "Files again"}, RunningApp{4, {}, "Bare"},
                       RunningApp{5, "com.apple.dock", "Dock"}};
    sources.privateList = PrivateAppList({"org.zzz", "org.notes", "org.mail"}, false);
    sources.shortcuts.quickBlur = Shortcut{11, "B", command};
    sources.now = since;
    MenuPanelFeed::fill(model, sources);

    std::vector<std::int64_t> locked;
    for (const auto& app : model.lockedApps.get()) locked.push_back(app.id);
    EXPECT_THAT(locked, ElementsAre(1, 3, 2));
    EXPECT_EQ(model.lockedApps.get()[1].since, since);
    std::vector<std::string> choices;
    for (const auto& choice : model.privateChoices.get())
        choices.push_back((choice.chosen ? "*" : "") + choice.name);
    EXPECT_THAT(choices, ElementsAre("Files", "*Mail", "*Notes", "*org.zzz"));
    EXPECT_FALSE(model.privateAppsOn.get());
    EXPECT_EQ(model.lockMacShortcut.get(), Shortcut::lockMac());
    EXPECT_EQ(model.quickBlurShortcut.get(), (Shortcut{11, "B", command}));
    EXPECT_EQ(model.now.get(), since);
}

TEST(StatusItemPlace, ReachesAsFarAsTheBar) {
    using OrvelCore::Rect;
    constexpr Rect screen{0, 0, 1000, 800};
    constexpr Rect underTop{0, 30, 1000, 770};
    constexpr Rect overBottom{0, 0, 1000, 760};
    EXPECT_EQ(StatusItemPlace::anchor({500, 10}, screen, underTop), (Rect{488, 0, 24, 30}));
    EXPECT_EQ(StatusItemPlace::anchor({500, 770}, screen, overBottom), (Rect{488, 760, 24, 40}));
    EXPECT_EQ(StatusItemPlace::anchor({500, 10}, screen, screen), (Rect{488, -2, 24, 24}));
    EXPECT_EQ(StatusItemPlace::guess(screen, underTop), (Point{976, 15}));
    EXPECT_EQ(StatusItemPlace::guess(screen, overBottom), (Point{976, 780}));
}

}  // namespace
