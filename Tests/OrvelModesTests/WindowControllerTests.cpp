#include <gmock/gmock.h>

#include "OrvelModes/OnboardingWindowController.h"
#include "OrvelModes/SettingsWindowController.h"
#include "OrvelModes/Uninstaller.h"

#include "Support/ManualLoop.h"

using namespace OrvelModes;
using OrvelUI::SettingsPane;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Calls = std::vector<std::string>;

struct StubWindow final : AppWindow {
    explicit StubWindow(Calls& heard) : calls(heard) { calls.push_back("made"); }

    void center() override { calls.push_back("center"); }
    void makeKeyAndOrderFront() override {
        calls.push_back("key");
        visible = true;
    }
    void orderFrontRegardless() override { calls.push_back("front"); }
    void setLevel(Level level) override {
        calls.push_back(level == Level::normal ? "normal" : "floating");
    }
    bool isVisible() const override { return visible; }
    void close() override {
        calls.push_back("close");
        visible = false;
        onWillClose();
    }

    Calls& calls;
    bool visible = false;
};

struct OnboardingWindowTest : testing::Test {
    Calls calls;
    bool active = true;
    std::weak_ptr<std::function<void()>> activation;
    StubWindow* window = nullptr;
    std::unique_ptr<OnboardingWindowController> controller =
        std::make_unique<OnboardingWindowController>(OnboardingWindowSystem{
            .makeWindow =
                [this](OrvelUI::OnboardingModel&) {
                    auto made = std::make_unique<StubWindow>(calls);
                    window = made.get();
                    return made;
                },
            .activate = [this] { calls.push_back("activate"); },
            .isActive = [this] { return active; },
            .observeActivation =
                [this](std::function<void()> activated) {
                    auto token = std::make_shared<std::function<void()>>(std::move(activated));
                    activation = token;
                    return token;
                }});

    void SetUp() override {
        controller->onClosedEarly = [this] { calls.push_back("closed early"); };
    }
    Calls taken() { return std::exchange(calls, {}); }
};

struct Locks {
    bool mac = false;
    int apps = 0;
};

/// Leaves the locks as they are after the wait for the guard.
OrvelSystem::Task<void> unregister(Calls& calls, Locks& locks, Locks afterwards) {
    calls.push_back("guard");
    locks = afterwards;
    co_return;
}

OrvelSystem::Task<void> uninstall(Uninstaller& uninstaller, const Locks& locks,
                                  std::optional<Uninstaller::Outcome>& outcome) {
    outcome = co_await uninstaller.run([&] { return locks.mac; }, [&] { return locks.apps; });
}

}  // namespace

TEST(SettingsWindowController, MakesOneWindowAndKeepsThePane) {
    Calls calls;
    SettingsWindowController controller(
        {.makeWindow = [&](OrvelUI::SettingsModel&) { return std::make_unique<StubWindow>(calls); },
         .activate = [&] { calls.push_back("activate"); }});
    controller.onWillShow = [&] { calls.push_back("will show"); };
    controller.model.onPaneChange = [&] { calls.push_back("pane"); };
    controller.show(SettingsPane::privateApps);
    EXPECT_THAT(calls, ElementsAre("will show", "pane", "made", "center", "activate", "key"));
    calls.clear();
    controller.show();
    EXPECT_THAT(calls, ElementsAre("will show", "activate", "key"));
    EXPECT_EQ(controller.model.pane.get(), SettingsPane::privateApps);
}

TEST_F(OnboardingWindowTest, FloatsUntilTheAppIsActive) {
    active = false;
    controller->show();
    EXPECT_THAT(taken(), ElementsAre("made", "center", "floating", "activate", "key", "front"));
    (*activation.lock())();
    EXPECT_THAT(taken(), ElementsAre("normal"));
    EXPECT_TRUE(activation.expired()) << "once is enough";
    active = true;
    controller->show();
    EXPECT_THAT(taken(), ElementsAre("activate", "key", "front"));
    controller->floatUntilActive(*window, true);
    EXPECT_THAT(taken(), ElementsAre("normal"));
}

TEST_F(OnboardingWindowTest, TellsOfAnEarlyCloseOnce) {
    controller->bringBack();
    EXPECT_THAT(taken(), IsEmpty());
    controller->show();
    taken();
    controller->bringBack();
    EXPECT_THAT(taken(), ElementsAre("activate", "key"));
    window->close();
    window->close();
    EXPECT_THAT(taken(), ElementsAre("close", "closed early", "close"));
    controller->bringBack();
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(OnboardingWindowTest, TheEndIsNoEarlyClose) {
    controller->show();
    taken();
    controller->finish();
    EXPECT_THAT(taken(), ElementsAre("close"));
}

TEST(Uninstaller, TakesEverythingInOrderOrNothing) {
    using Outcome = Uninstaller::Outcome;
    struct Row {
        Locks locks;
        Locks afterGuard;
        bool trashWorks;
        Outcome outcome;
        Calls calls;
    };
    const Row rows[] = {
        {{.mac = true}, {}, true, Outcome::refusedWhileLocked, {}},
        {{.apps = 1}, {}, true, Outcome::refusedWhileLocked, {}},
        {{}, {.mac = true}, true, Outcome::refusedWhileLocked, {"guard"}},
        {{}, {.apps = 1}, true, Outcome::refusedWhileLocked, {"guard"}},
        {{},
         {},
         false,
         Outcome::leftInApplications,
         {"guard", "login", "settings", "folder", "trash"}},
        {{}, {}, true, Outcome::done, {"guard", "login", "settings", "folder", "trash", "quit"}}};
    for (const auto& row : rows) {
        ManualLoop loop;
        Calls calls;
        Locks locks = row.locks;
        const auto step = [&](const char* name) {
            return [&calls, name] { calls.push_back(name); };
        };
        Uninstaller uninstaller(
            {.unregisterGuard = [&] { return unregister(calls, locks, row.afterGuard); },
             .unregisterLoginItem = step("login"),
             .removeSettings = step("settings"),
             .removeSupportFolder = step("folder"),
             .moveAppToTrash =
                 [&] {
                     calls.push_back("trash");
                     return row.trashWorks;
                 },
             .quit = step("quit")});
        std::optional<Outcome> outcome;
        OrvelSystem::spawn(loop, uninstall(uninstaller, locks, outcome));
        loop.drain();
        EXPECT_EQ(outcome, row.outcome);
        EXPECT_EQ(calls, row.calls);
    }
}
