#include <gmock/gmock.h>

#include "OrvelCore/Brand.h"
#include "OrvelCovers/PrivateAppsController.h"
#include "OrvelSystem/Workspace.h"

#include "Support/ManualLoop.h"

using namespace OrvelCovers;
using OrvelCore::PrivateAppList;
using OrvelCore::URLCommands::Switch;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct PrivateAppsTest : testing::Test {
    ManualLoop main;
    CoverController controller{[](const auto&) { return nullptr; }};
    TimerTicker ticker{main};
    CoverLoop loop{
        controller,
        {.windows = [] { return std::vector<OrvelCore::WindowInfo>(); },
         .windowNumbers = [] { return std::vector<std::int64_t>(); },
         .windowBounds = [](const auto&) { return std::map<std::int64_t, OrvelCore::Rect>(); },
         .displays = [] { return std::vector<OrvelCore::Rect>(); },
         .activePID = [] { return std::nullopt; },
         .peekPoint = [] { return std::nullopt; },
         .mouseDown = [] { return false; },
         .now = [this] { return main.uptime(); }},
        ticker};
    OrvelCore::InMemorySettingsStore defaults;
    std::vector<RunningApp> running{{10, "mail", "Mail"}, {11, "notes", "Notes"}, {12, {}, "x"}};

    PrivateAppsController make() {
        return {loop, defaults, [this] { return running; }};
    }
};

TEST_F(PrivateAppsTest, WatchesTheRunningAppsOfTheStoredListThroughTheirNextStart) {
    PrivateAppList({"mail", "absent"}).save(defaults);
    auto apps = make();
    EXPECT_THAT(loop.privatePIDs(), ElementsAre(10));

    running = {{20, "mail", "Mail"}, {21, "mail", "Mail"}, {22, "", "no one"}};
    apps.refresh();
    EXPECT_THAT(loop.privatePIDs(), ElementsAre(20, 21));
}

TEST_F(PrivateAppsTest, StoresEachChangeAndCarriesItOutAtOnce) {
    auto apps = make();
    apps.toggle("notes");
    apps.toggle("mail");
    apps.toggle(OrvelCore::Brand::bundleIdentifier);
    EXPECT_THAT(loop.privatePIDs(), ElementsAre(10, 11));
    EXPECT_THAT(PrivateAppList::load(defaults).bundleIDs(), ElementsAre("notes", "mail"));

    apps.toggle("notes");
    EXPECT_THAT(loop.privatePIDs(), ElementsAre(10));
    apps.setEnabled(false);
    EXPECT_THAT(loop.privatePIDs(), IsEmpty());
    EXPECT_EQ(PrivateAppList::load(defaults), PrivateAppList({"mail"}, false));
    apps.setEnabled(true);
    EXPECT_THAT(loop.privatePIDs(), ElementsAre(10));
}

TEST_F(PrivateAppsTest, ACommandGoesByWhatIsStoredAndNotByAnOlderCopy) {
    auto apps = make();
    const struct {
        bool stored;
        Switch change;
        bool enabled;
    } cases[] = {{false, Switch::toggle, true},
                 {true, Switch::toggle, false},
                 {true, Switch::on, true},
                 {true, Switch::off, false}};
    for (const auto& one : cases) {
        PrivateAppList({"notes"}, one.stored).save(defaults);
        apps.apply(one.change);
        EXPECT_EQ(PrivateAppList::load(defaults), PrivateAppList({"notes"}, one.enabled));
        EXPECT_EQ(loop.privatePIDs().contains(11), one.enabled);
    }
}

TEST(RunningApp, AlwaysHasAName) {
    EXPECT_EQ(RunningApp::of({7, "app.7", "Seven"}), (RunningApp{7, "app.7", "Seven"}));
    EXPECT_EQ(RunningApp::of({7, "app.7", ""}).name, "app.7");
    EXPECT_EQ(RunningApp::of({7, {}, ""}).name, "App");
}

}  // namespace
