#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "OrvelModes/ShortcutRegistrar.h"

using namespace OrvelModes;
using OrvelCore::Shortcut;
using OrvelCore::ShortcutSet;
using testing::ElementsAre;
using testing::IsEmpty;
using Action = ShortcutSet::Action;

namespace {

struct RegistrarTest : testing::Test {
    std::vector<std::string> log;
    std::set<std::string> refused;
    std::map<std::string, std::function<void()>> handlers;
    std::vector<std::set<Action>> taken;
    std::vector<Action> pressed;
    std::unique_ptr<ShortcutRegistrar> registrar;

    void SetUp() override {
        registrar = std::make_unique<ShortcutRegistrar>(
            [this](const Shortcut& shortcut, std::function<void()> handler) {
                const std::string keys = shortcut.display();
                log.push_back("+" + keys);
                std::function<void()> unregister;
                if (!refused.contains(keys)) {
                    handlers[keys] = std::move(handler);
                    unregister = [this, keys] { log.push_back("-" + keys); };
                }
                return unregister;
            });
        registrar->onTaken = [this](const auto& actions) { taken.push_back(actions); };
        registrar->onPressed = [this](Action action) { pressed.push_back(action); };
    }

    std::vector<std::string> takeLog() { return std::exchange(log, {}); }
};

ShortcutSet withBlur() {
    ShortcutSet set;
    set.quickBlur = Shortcut{11, "B", Shortcut::Modifiers::control};
    return set;
}

TEST_F(RegistrarTest, registersWhatIsSetInTheOrderOfActions) {
    registrar->apply(withBlur());
    EXPECT_THAT(takeLog(), ElementsAre("+⌘L", "+⌥⌘L", "+⌃B"));
    EXPECT_THAT(taken, ElementsAre(IsEmpty()));

    handlers["⌃B"]();
    handlers["⌘L"]();
    EXPECT_THAT(pressed, ElementsAre(Action::quickBlur, Action::lockMac));
}

TEST_F(RegistrarTest, anUnchangedSetTouchesNothingEvenWhenSomeOfItWasRefused) {
    refused = {"⌘L"};
    registrar->apply(ShortcutSet{});
    EXPECT_THAT(taken, ElementsAre(ElementsAre(Action::lockMac)));
    takeLog();

    refused.clear();
    registrar->apply(ShortcutSet{});
    EXPECT_THAT(log, IsEmpty());
    EXPECT_EQ(taken.size(), 1u);
}

TEST_F(RegistrarTest, aChangeReplacesAllAndClearsWhatNoLongerHolds) {
    refused = {"⌥⌘L"};
    registrar->apply(ShortcutSet{});
    takeLog();

    ShortcutSet set = withBlur();
    set.lockApp.reset();
    registrar->apply(set);
    EXPECT_THAT(takeLog(), ElementsAre("-⌘L", "+⌘L", "+⌃B"));
    EXPECT_THAT(taken, ElementsAre(ElementsAre(Action::lockApp), IsEmpty()));
}

TEST_F(RegistrarTest, aPauseHoldsOffAndTheResumeRegistersTheLastSetAnew) {
    registrar->apply(ShortcutSet{});
    takeLog();

    registrar->pause();
    EXPECT_TRUE(registrar->isPaused());
    EXPECT_THAT(takeLog(), ElementsAre("-⌘L", "-⌥⌘L"));
    registrar->apply(withBlur());
    EXPECT_THAT(log, IsEmpty());
    EXPECT_EQ(taken.size(), 1u);

    registrar->resume();
    EXPECT_FALSE(registrar->isPaused());
    EXPECT_THAT(takeLog(), ElementsAre("+⌘L", "+⌥⌘L", "+⌃B"));
    EXPECT_EQ(taken.size(), 2u);

    registrar->pause();
    registrar->resume();
    EXPECT_EQ(takeLog().size(), 6u);
    EXPECT_EQ(taken.size(), 3u);
}

TEST_F(RegistrarTest, withNothingAppliedAResumeDoesNothing) {
    registrar->pause();
    registrar->resume();
    EXPECT_THAT(log, IsEmpty());
    EXPECT_THAT(taken, IsEmpty());
}

TEST_F(RegistrarTest, aShortcutMayPauseTheRegistrarThatItCameFrom) {
    registrar->apply(ShortcutSet{});
    registrar->onPressed = [this](Action) { registrar->pause(); };
    handlers["⌘L"]();
    EXPECT_THAT(log, ElementsAre("+⌘L", "+⌥⌘L", "-⌘L", "-⌥⌘L"));
}

TEST_F(RegistrarTest, aDroppedRegistrarUnregistersNothingAndPassesNoPressOn) {
    registrar->apply(ShortcutSet{});
    takeLog();
    registrar.reset();
    handlers["⌘L"]();
    EXPECT_THAT(log, IsEmpty());
    EXPECT_THAT(pressed, IsEmpty());
}

}  // namespace
