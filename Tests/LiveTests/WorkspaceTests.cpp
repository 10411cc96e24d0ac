#include <QApplication>
#include <QImage>
#include <QWidget>

#include "OrvelSystem/X11/WindowManager.h"
#include "OrvelSystem/X11/X11Workspace.h"

#include "Live.h"
#include "OneWindowApp.h"

namespace {

/// Runs with openbox (true) and without a window manager.
struct WorkspaceTest : LiveTest, testing::WithParamInterface<bool> {
    WorkspaceTest() {
        if (GetParam()) startWindowManager();
        writeEntries();
        workspace.emplace();
        token = workspace->observe({
            .activated = [this](auto pid) { activated.push_back(pid); },
            .launched = [this](auto pid) { launched.push_back(pid); },
            .terminated = [this](auto pid) { terminated.push_back(pid); },
            .activeSpaceChanged = [this] { ++spaces; },
            .unhidden = [this] { ++unhidden; },
        });
    }
    static std::filesystem::path entryFile(const std::string& id) {
        return folder() / ("share/applications/" + id + ".desktop");
    }

    static void writeEntry(const std::string& id, const std::string& lines) {
        writeText(entryFile(id), "[Desktop Entry]\nType=Application\nExec=true\n" + lines);
    }

    static std::string iconFile() { return (folder() / "icon.png").string(); }
    static void writeEntries() {
        std::filesystem::create_directories(entryFile("folder"));
        QImage picture(64, 64, QImage::Format_ARGB32);
        picture.fill(0xFF102030);
        picture.save(QString::fromStdString(iconFile()));
        writeEntry("org.test.Sample", "Name=Sample App\nStartupWMClass=Sample\nIcon=" + iconFile());
        writeEntry("org.test.Hidden", "Name=Hidden\nHidden=true\n");
        writeEntry("org.test.Menuless", "Name=Menuless\nNoDisplay=true\n");
        writeEntry("org.test.Absent", "Name=Absent\nTryExec=/no/such/program\n");
        writeEntry("org.test.Loop", "Name=Loop 10\nExec=env env env %k %%\nIcon=/dev/null\n");
        writeEntry("org.test.Long", "Name=Loop 2\nComment=" + std::string(10 << 20, 'x') + "\n");
        writeEntry("quotes", "Name=Quotes\nExec=\"true\n");
        std::string garbage(1 << 16, '\0');
        for (std::size_t at = 0; at < garbage.size(); ++at)
            garbage[at] = static_cast<char>(at * 2654435761U >> 13);
        writeText(entryFile("binary"), garbage);
        writeText(entryFile("empty"), "");
        writeText(entryFile("org.test.\xff"),
                  "[Desktop Entry]\nType=Application\nExec=true\nName=x\n");
    }
    std::vector<std::int64_t> running() {
        std::vector<std::int64_t> pids;
        for (const auto& app : workspace->runningApplications()) pids.push_back(app.pid);
        return pids;
    }
    bool eventuallyRuns(const OneWindowApp& app) {
        return eventually([&] { return std::ranges::count(running(), app.pid()) == 1; });
    }
    bool eventuallyActive(const OneWindowApp& app) {
        return eventually([&] { return workspace->isActive(app.pid()); });
    }

    std::optional<X11Workspace> workspace;
    Subscription token;
    std::vector<std::int64_t> activated, launched, terminated;
    int spaces = 0, unhidden = 0;
};

TEST_P(WorkspaceTest, TellsOfAnAppFromItsFirstWindowToItsEnd) {
    std::optional<OneWindowApp> app("Sample");
    ASSERT_TRUE(eventually([&] { return !launched.empty(); }));
    EXPECT_THAT(launched, ElementsAre(app->pid()));
    EXPECT_THAT(workspace->runningApplications(),
                ElementsAre(RunningApplication{app->pid(), "org.test.Sample", "Sample App"}));

    app->openOrClose();
    EXPECT_TRUE(eventually([&] { return running().empty(); }));
    EXPECT_THAT(terminated, IsEmpty());
    EXPECT_TRUE(workspace->application(app->pid()));
    app->openOrClose();
    ASSERT_TRUE(eventuallyRuns(*app));
    EXPECT_THAT(launched, ElementsAre(app->pid(), app->pid()));

    const auto pid = app->pid();
    app->kill();
    EXPECT_TRUE(eventually([&] { return !terminated.empty(); }));
    EXPECT_TRUE(eventually([&] { return running().empty(); }));
    EXPECT_THAT(terminated, ElementsAre(pid));
    EXPECT_EQ(workspace->application(pid), std::nullopt);
    EXPECT_EQ(launched.size(), 2U);
}

TEST_P(WorkspaceTest, BringsAppsToTheFrontAndTakesThemFromTheScreen) {
    const OneWindowApp one("Sample");
    ASSERT_TRUE(eventuallyRuns(one));
    const OneWindowApp other("Unknown-Tool");
    ASSERT_TRUE(eventuallyRuns(other));

    workspace->activate(one.pid());
    ASSERT_TRUE(eventuallyActive(one));
    EXPECT_EQ(workspace->frontmostApplication()->bundleID, "org.test.Sample");
    workspace->activate(other.pid());
    ASSERT_TRUE(eventuallyActive(other));
    EXPECT_EQ(workspace->frontmostApplication()->bundleID, "LiveTests");
    ASSERT_TRUE(eventually([&] { return !activated.empty() && activated.back() == other.pid(); }));
    std::erase(activated, 0);
    ASSERT_GE(activated.size(), 2U);
    EXPECT_EQ(*(activated.rbegin() + 1), one.pid());

    const auto before = screen().mappedWindows().size();
    workspace->hide(other.pid());
    EXPECT_TRUE(eventually([&] { return screen().mappedWindows().size() == before - 1; }));
    EXPECT_TRUE(eventually([&] { return !workspace->isActive(other.pid()); }));
    workspace->activate(other.pid());
    EXPECT_TRUE(eventuallyActive(other));
    EXPECT_EQ(screen().mappedWindows().size(), before);
    EXPECT_TRUE(eventually([&] { return unhidden == (GetParam() ? 1 : 0); }));

    if (GetParam()) {
        for (const auto* app : {&one, &other}) workspace->hide(app->pid());
        EXPECT_TRUE(eventually([&] { return activated.back() == 0; })) << "no window is active";
    }

    workspace->terminate(other.pid());
    EXPECT_TRUE(eventually([&] { return terminated == std::vector{other.pid()}; }));
}

TEST_P(WorkspaceTest, LeavesThisProgramsOwnWindowsAlone) {
    QWidget own;
    own.show();
    const auto window = static_cast<xcb_window_t>(own.winId());
    ASSERT_TRUE(eventually([&] { return own.isVisible(); }));
    const OneWindowApp app("Sample");
    ASSERT_TRUE(eventuallyRuns(app));
    EXPECT_THAT(running(), ElementsAre(app.pid()));
    auto* const connection = X11::shared().connection();
    const auto attributes =
        replyOf(connection, xcb_get_window_attributes, xcb_get_window_attributes_reply, window);
    EXPECT_TRUE(attributes->your_event_mask & XCB_EVENT_MASK_KEY_PRESS);
}

TEST_P(WorkspaceTest, OutlivesItsWindowManager) {
    const OneWindowApp before("Sample");
    ASSERT_TRUE(eventuallyRuns(before));
    GetParam() ? endWindowManager() : startWindowManager();
    const OneWindowApp after("Sample");
    EXPECT_TRUE(eventuallyRuns(after));
    EXPECT_TRUE(eventually([&] { return running().size() == 2; }));
    EXPECT_THAT(running(), UnorderedElementsAre(before.pid(), after.pid()));
    workspace->activate(before.pid());
    EXPECT_TRUE(eventuallyActive(before));
    EXPECT_THAT(terminated, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(With, WorkspaceTest, testing::Bool(), [](const auto& given) {
    return std::string(given.param ? "Manager" : "Nobody");
});

using ManagedTest = WorkspaceTest;
INSTANTIATE_TEST_SUITE_P(With, ManagedTest, testing::Values(true),
                         [](const auto&) { return std::string("Manager"); });

TEST_P(ManagedTest, TellsOfAnotherDesktop) {
    WindowManager::request(X11::shared().root(), "_NET_CURRENT_DESKTOP", {1});
    EXPECT_TRUE(eventually([&] { return spaces == 1; }));
    WindowManager::request(X11::shared().root(), "_NET_CURRENT_DESKTOP", {0});
    EXPECT_TRUE(eventually([&] { return spaces == 2; }));
}

using UnmanagedTest = WorkspaceTest;
INSTANTIATE_TEST_SUITE_P(With, UnmanagedTest, testing::Values(false),
                         [](const auto&) { return std::string("Nobody"); });

TEST_P(UnmanagedTest, SeesThroughTheFramesOfAManagerThatTellsNothing) {
    const OneWindowApp app("Sample");
    ASSERT_TRUE(eventuallyRuns(app));
    auto* const connection = screen().connection();
    const auto frame = createWindow({0, 0, 300, 200}, XCB_CW_OVERRIDE_REDIRECT, {1});
    xcb_reparent_window(connection, *screen().find("Sample"), frame, 0, 20);
    screen().sync();
    EXPECT_TRUE(eventually([&] { return running().empty(); }));
    xcb_map_window(connection, frame);
    screen().sync();
    EXPECT_TRUE(eventuallyRuns(app));
    EXPECT_THAT(running(), ElementsAre(app.pid()));
}

TEST_P(UnmanagedTest, ReadsEntriesBesideBrokenOnesAndAgainAfterAChange) {
    EXPECT_EQ(workspace->nameOfInstalled("org.test.Sample"), "Sample App");
    const auto icon = workspace->icon("org.test.Sample");
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->width, 64);
    EXPECT_EQ(icon->pixels.front(), 0xFF102030);
    for (const auto* id : {"org.test.Hidden", "org.test.Absent", "binary", "folder", "quotes"})
        EXPECT_EQ(workspace->nameOfInstalled(id), std::nullopt) << id;
    EXPECT_EQ(workspace->icon("org.test.Loop"), nullptr);
    std::vector<std::string> shown;
    for (const auto& app : workspace->installedApplications()) {
        if (app.bundleID.starts_with("org.test.")) shown.push_back(app.name);
    }
    EXPECT_THAT(shown, ElementsAre("Loop 2", "Loop 10", "Sample App"));

    writeEntry("org.test.New", "Name=New\n");
    EXPECT_TRUE(eventually([&] { return workspace->nameOfInstalled("org.test.New").has_value(); }));
    std::filesystem::remove(entryFile("org.test.New"));
    EXPECT_TRUE(eventually([&] { return !workspace->nameOfInstalled("org.test.New"); }));
}

}  // namespace
