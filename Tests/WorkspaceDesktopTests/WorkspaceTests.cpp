#include <QApplication>
#include <QImage>
#include <QWidget>
#include <optional>

#include <gmock/gmock.h>
#include <unistd.h>

#include "OrvelSystem/Linux/WindowManager.h"
#include "OrvelSystem/Linux/X11Workspace.h"

#include "Desktop/Eventually.h"
#include "Desktop/Screen.h"
#include "Desktop/XServer.h"
#include "SampleApp.h"
#include "Support/TemporaryFolder.h"

using namespace OrvelSystem;
using namespace DesktopTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

std::unique_ptr<TemporaryFolder> home;

std::filesystem::path entryFile(const std::string& id) {
    return *home / ("share/applications/" + id + ".desktop");
}

void writeEntry(const std::string& id, const std::string& lines) {
    writeText(entryFile(id), "[Desktop Entry]\nType=Application\nExec=true\n" + lines);
}

std::string iconFile() {
    return (*home / "icon.png").string();
}

bool eventuallyInLoop(const std::function<bool()>& holds) {
    return eventually([&] {
        QCoreApplication::processEvents();
        return holds();
    });
}

/// With openbox (true), or with no window manager at all.
struct WorkspaceTest : testing::TestWithParam<bool> {
    WorkspaceTest() {
        if (GetParam()) startManager();
        workspace.emplace();
        token = workspace->observe({
            .activated = [this](auto pid) { activated.push_back(pid); },
            .launched = [this](auto pid) { launched.push_back(pid); },
            .terminated = [this](auto pid) { terminated.push_back(pid); },
            .activeSpaceChanged = [this] { ++spaces; },
            .unhidden = [this] { ++unhidden; },
        });
    }
    ~WorkspaceTest() override {
        manager.reset();
        EXPECT_TRUE(eventuallyInLoop([] { return !WindowManager::isThere(); }));
    }

    void startManager() {
        auto& x11 = X11::shared();
        constexpr auto desktops = "_NET_NUMBER_OF_DESKTOPS";
        xcb_delete_property(x11.connection(), x11.root(), x11.atom(desktops));
        manager.emplace(Arguments{"openbox", "--sm-disable"},
                        Environment{{"DISPLAY", std::getenv("DISPLAY")},
                                    {"PATH", std::getenv("PATH")},
                                    {"HOME", home->path().string()}});
        ASSERT_TRUE(eventuallyInLoop([] { return WindowManager::isThere(); }));
        // Windows and requests that come while it starts are lost.
        ASSERT_TRUE(eventuallyInLoop([&] {
            WindowManager::request(x11.root(), desktops, {3});
            return x11.property32(x11.root(), desktops) == std::vector{3U};
        }));
    }
    std::vector<std::int64_t> running() {
        std::vector<std::int64_t> pids;
        for (const auto& app : workspace->runningApplications()) pids.push_back(app.pid);
        return pids;
    }
    bool eventuallyRuns(const SampleApp& app) {
        return eventuallyInLoop([&] { return std::ranges::count(running(), app.pid()) == 1; });
    }
    bool eventuallyActive(const SampleApp& app) {
        return eventuallyInLoop([&] { return workspace->isActive(app.pid()); });
    }

    std::optional<Process> manager;
    std::optional<X11Workspace> workspace;
    std::shared_ptr<void> token;
    std::vector<std::int64_t> activated, launched, terminated;
    int spaces = 0, unhidden = 0;
};

TEST_P(WorkspaceTest, TellsOfAnAppFromItsFirstWindowToItsEnd) {
    std::optional<SampleApp> app("Sample");
    ASSERT_TRUE(eventuallyInLoop([&] { return !launched.empty(); }));
    EXPECT_THAT(launched, ElementsAre(app->pid()));
    EXPECT_THAT(workspace->runningApplications(),
                ElementsAre(RunningApplication{app->pid(), "org.test.Sample", "Sample App"}));

    app->openOrClose();
    EXPECT_TRUE(eventuallyInLoop([&] { return running().empty(); }));
    EXPECT_THAT(terminated, IsEmpty());
    EXPECT_TRUE(workspace->application(app->pid()));
    app->openOrClose();
    ASSERT_TRUE(eventuallyRuns(*app));
    EXPECT_THAT(launched, ElementsAre(app->pid(), app->pid()));

    const auto pid = app->pid();
    app->kill();
    EXPECT_TRUE(eventuallyInLoop([&] { return !terminated.empty(); }));
    EXPECT_TRUE(eventuallyInLoop([&] { return running().empty(); }));
    EXPECT_THAT(terminated, ElementsAre(pid));
    EXPECT_EQ(workspace->application(pid), std::nullopt);
    EXPECT_EQ(launched.size(), 2U);
}

TEST_P(WorkspaceTest, BringsAppsToTheFrontAndTakesThemFromTheScreen) {
    const SampleApp one("Sample");
    ASSERT_TRUE(eventuallyRuns(one));
    const SampleApp other("Unknown-Tool");
    ASSERT_TRUE(eventuallyRuns(other));

    workspace->activate(one.pid());
    ASSERT_TRUE(eventuallyActive(one));
    EXPECT_EQ(workspace->frontmostApplication()->bundleID, "org.test.Sample");
    workspace->activate(other.pid());
    ASSERT_TRUE(eventuallyActive(other));
    EXPECT_EQ(workspace->frontmostApplication()->bundleID, "WorkspaceDesktopTests");
    ASSERT_GE(activated.size(), 2U);
    EXPECT_EQ(activated.back(), other.pid());
    EXPECT_EQ(*(activated.rbegin() + 1), one.pid());

    Screen screen(std::getenv("DISPLAY"));
    const auto before = screen.mappedWindows().size();
    workspace->hide(other.pid());
    EXPECT_TRUE(eventuallyInLoop([&] { return screen.mappedWindows().size() == before - 1; }));
    EXPECT_TRUE(eventuallyInLoop([&] { return !workspace->isActive(other.pid()); }));
    workspace->activate(other.pid());
    EXPECT_TRUE(eventuallyActive(other));
    EXPECT_EQ(screen.mappedWindows().size(), before);
    EXPECT_TRUE(eventuallyInLoop([&] { return unhidden == (GetParam() ? 1 : 0); }));

    workspace->terminate(other.pid());
    EXPECT_TRUE(eventuallyInLoop([&] { return terminated == std::vector{other.pid()}; }));
}

TEST_P(WorkspaceTest, LeavesThisProgramsOwnWindowsAlone) {
    QWidget own;
    own.show();
    const auto window = static_cast<xcb_window_t>(own.winId());
    ASSERT_TRUE(eventuallyInLoop([&] { return own.isVisible(); }));
    const SampleApp app("Sample");
    ASSERT_TRUE(eventuallyRuns(app));
    EXPECT_THAT(running(), ElementsAre(app.pid()));
    auto* const connection = X11::shared().connection();
    const OrvelSystem::XReply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window),
                                        nullptr));
    EXPECT_TRUE(attributes->your_event_mask & XCB_EVENT_MASK_KEY_PRESS);
}

TEST_P(WorkspaceTest, OutlivesItsWindowManager) {
    const SampleApp before("Sample");
    ASSERT_TRUE(eventuallyRuns(before));
    if (manager) {
        manager->kill();
        manager.reset();
    } else {
        startManager();
    }
    const SampleApp after("Sample");
    EXPECT_TRUE(eventuallyRuns(after));
    EXPECT_TRUE(eventuallyInLoop([&] { return running().size() == 2; }));
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
    EXPECT_TRUE(eventuallyInLoop([&] { return spaces == 1; }));
    WindowManager::request(X11::shared().root(), "_NET_CURRENT_DESKTOP", {0});
    EXPECT_TRUE(eventuallyInLoop([&] { return spaces == 2; }));
}

TEST_P(ManagedTest, KnowsAnOrdinaryProgramOfTheSystem) {
    const Process xterm({"xterm"}, {{"DISPLAY", std::getenv("DISPLAY")},
                                    {"PATH", std::getenv("PATH")},
                                    {"HOME", home->path().string()}});
    ASSERT_TRUE(eventuallyInLoop([&] { return !launched.empty(); }));
    EXPECT_THAT(workspace->runningApplications(),
                ElementsAre(RunningApplication{xterm.pid(), "debian-xterm", "XTerm"}));
}

using UnmanagedTest = WorkspaceTest;
INSTANTIATE_TEST_SUITE_P(With, UnmanagedTest, testing::Values(false),
                         [](const auto&) { return std::string("Nobody"); });

TEST_P(UnmanagedTest, SeesThroughTheFramesOfAManagerThatTellsNothing) {
    const SampleApp app("Sample");
    ASSERT_TRUE(eventuallyRuns(app));
    Screen screen(std::getenv("DISPLAY"));
    auto* const connection = screen.connection();
    const xcb_window_t frame = xcb_generate_id(connection);
    const std::uint32_t unmanaged = 1;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, frame, screen.root(), 0, 0, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &unmanaged);
    xcb_reparent_window(connection, *screen.find("Sample"), frame, 0, 20);
    screen.sync();
    EXPECT_TRUE(eventuallyInLoop([&] { return running().empty(); }));
    xcb_map_window(connection, frame);
    screen.sync();
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
    EXPECT_TRUE(
        eventuallyInLoop([&] { return workspace->nameOfInstalled("org.test.New").has_value(); }));
    std::filesystem::remove(entryFile("org.test.New"));
    EXPECT_TRUE(eventuallyInLoop([&] { return !workspace->nameOfInstalled("org.test.New"); }));
}

void writeEntries() {
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
    writeText(entryFile("org.test.\xff"), "[Desktop Entry]\nType=Application\nExec=true\nName=x\n");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::string_view(argv[1]) == SampleApp::argument)
        return SampleApp::run(argv[2]);
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    const XServer server;
    home = std::make_unique<TemporaryFolder>();
    writeEntries();
    qputenv("XDG_DATA_HOME", QByteArray::fromStdString((*home / "share").string()));
    qputenv("DISPLAY", QByteArray::fromStdString(server.display()));
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const int result = RUN_ALL_TESTS();
    home.reset();
    return result;
}
