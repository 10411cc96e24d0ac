#include "OrvelCore/Match.h"
#include "OrvelModes/Windows/ShortcutRecorder.h"
#include "OrvelModes/Windows/ShortcutRegistrar.h"

#include "Support/Prelude.h"

using namespace OrvelModes;
using OrvelCore::RecorderDecision;
using OrvelCore::Shortcut;
using OrvelCore::ShortcutSet;
using Action = ShortcutSet::Action;
namespace RecorderDecisions = OrvelCore::RecorderDecisions;

namespace {

std::string describe(Action action, const RecorderDecision& decision) {
    const std::string what = OrvelCore::match(
        decision,
        [](const RecorderDecisions::Record& record) {
            return "record " + record.shortcut.stored();
        },
        [](RecorderDecisions::Cancel) { return std::string("cancel"); },
        [](RecorderDecisions::Clear) { return std::string("clear"); },
        [](RecorderDecisions::Ignore) { return std::string("ignore"); });
    return std::string(OrvelCore::rawValue(action)) + " " + what;
}

struct RecorderTest : testing::Test {
    std::vector<std::string> log;
    ShortcutRecorder::OnKey key;
    std::function<void()> end;
    std::unique_ptr<ShortcutRecorder> recorder;

    void SetUp() override {
        const auto note = [this](const char* what) {
            return [this, what] { log.push_back(what); };
        };
        recorder = std::make_unique<ShortcutRecorder>(ShortcutRecorder::Hooks{
            .pauseShortcuts = note("pause"),
            .resumeShortcuts = note("resume"),
            .watchKeys =
                [this](ShortcutRecorder::OnKey onKey) {
                    log.push_back("keys");
                    key = std::move(onKey);
                },
            .watchEnds =
                [this](std::function<void()> onEnd) {
                    log.push_back("ends");
                    end = std::move(onEnd);
                },
            .stopWatching = note("stop"),
        });
        recorder->onDecision = [this](Action action, const RecorderDecision& decision) {
            EXPECT_EQ(recorder->recording(), std::nullopt);
            log.push_back(describe(action, decision));
        };
    }

    void startOn(Action action) {
        recorder->start(action);
        log.clear();
    }
};

constexpr auto command = Shortcut::Modifiers::command;

TEST_F(RecorderTest, everyWayToADecision) {
    struct Case {
        const char* name;
        std::function<void(RecorderTest&)> act;
        const char* decision;
    };
    const Case cases[] = {
        {"a combination", [](auto& t) { t.key(37, command, "l"); }, "lockApp record 37:1:L"},
        {"delete", [](auto& t) { t.key(51, {}, std::nullopt); }, "lockApp clear"},
        {"forward delete", [](auto& t) { t.key(117, {}, std::nullopt); }, "lockApp clear"},
        {"esc", [](auto& t) { t.key(53, {}, std::nullopt); }, "lockApp cancel"},
        {"the window's end", [](auto& t) { t.end(); }, "lockApp cancel"},
        {"stop", [](auto& t) { t.recorder->stop(); }, "lockApp cancel"},
    };
    for (const Case& each : cases) {
        startOn(Action::lockApp);
        each.act(*this);
        EXPECT_THAT(log, ElementsAre("stop", each.decision, "resume")) << each.name;
    }
}

TEST_F(RecorderTest, onlyTheSettingsWindowsOwnKeysAreTaken) {
    const int settings = 0;
    const int other = 0;
    EXPECT_TRUE(ShortcutRecorder::takes(&settings, &settings));
    EXPECT_FALSE(ShortcutRecorder::takes(&other, &settings));
    EXPECT_FALSE(ShortcutRecorder::takes(nullptr, &settings));
    EXPECT_FALSE(ShortcutRecorder::takes(&settings, nullptr));
    EXPECT_FALSE(ShortcutRecorder::takes(nullptr, nullptr));
}

TEST(ShortcutRecorderWithRegistrar, aRecordedShortcutIsRegisteredOnceAndAfterItsOldOneIsGone) {
    std::vector<std::string> log;
    ShortcutRegistrar registrar([&](const Shortcut& shortcut, const std::function<void()>&) {
        const std::string keys = shortcut.display();
        log.push_back("+" + keys);
        return std::function<void()>([&log, keys] { log.push_back("-" + keys); });
    });
    ShortcutSet set;
    set.lockApp.reset();
    registrar.apply(set);

    ShortcutRecorder::OnKey key;
    ShortcutRecorder recorder({
        .pauseShortcuts = [&] { registrar.pause(); },
        .resumeShortcuts = [&] { registrar.resume(); },
        .watchKeys = [&](ShortcutRecorder::OnKey onKey) { key = std::move(onKey); },
        .watchEnds = [](const std::function<void()>&) {},
        .stopWatching = [] {},
    });
    recorder.onDecision = [&](Action action, const RecorderDecision& decision) {
        const auto result = OrvelCore::ShortcutEditor::apply(decision, action, set, {});
        EXPECT_TRUE(result.saved);
        registrar.apply(result.set);
    };
    recorder.start(Action::lockMac);
    key(40, command, "k");
    EXPECT_THAT(log, ElementsAre("+⌘L", "-⌘L", "+⌘K"));
}

}  // namespace
