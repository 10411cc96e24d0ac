#include "OrvelCore/Match.h"
#include "OrvelCore/ShortcutRecording.h"

using Modifiers = Shortcut::Modifiers;
using Action = ShortcutSet::Action;

namespace {

constexpr Modifiers none{0}, command{1}, option{2}, control{4}, shift{8};
constexpr OSVersion macOS26{26, 0, 0};

/// Returns "refused: ...", "warning: ..." or "ok".
std::string verdict(const Shortcut& shortcut, Action action = Action::quickBlur,
                    const ShortcutSet& set = {}, OSVersion version = macOS26) {
    return match(
        ShortcutRules::check(shortcut, action, set, version),
        [](const ShortcutChecks::Warning& w) { return "warning: " + w.message; },
        [](const ShortcutChecks::Refused& r) { return "refused: " + r.message; },
        [](const ShortcutChecks::Ok&) { return std::string("ok"); });
}

const std::string noModifier =
    "refused: Add Command, Control or Option, so the shortcut never takes a key from your typing.";
const std::string onlyOption =
    "refused: macOS 15.0 and 15.1 block shortcuts that use only Option. Add Command or Control.";

}  // namespace

TEST(Shortcut, SurvivesAsText) {
    EXPECT_EQ(Shortcut::lockMac().stored(), "37:1:L");
    const Shortcut shortcuts[] = {Shortcut::lockMac(),
                                  Shortcut::lockApp(),
                                  {41, ":", command},
                                  {0, "a:b", shift},
                                  {4294967295, "←", {-9}}};
    for (const auto& shortcut : shortcuts)
        EXPECT_EQ(Shortcut::fromStored(shortcut.stored()), shortcut);
    for (const char* bad : {"", ":1:L", "37::L", "37:1:", "37:1", "37", "x:1:L", "-1:1:L",
                            "4294967296:1:L", "37:1x:L", " 37:1:L", "37:9223372036854775808:L"})
        EXPECT_FALSE(Shortcut::fromStored(bad)) << bad;
}

TEST(ShortcutRules, RefusesInOrder) {
    ShortcutSet set;
    set.quickBlur = Shortcut{49, "Space", control};
    const OSVersion v150{15, 0, 0}, v151{15, 1, 4}, v152{15, 2, 0}, v146{14, 6, 0}, other{};
    const Shortcut optionK{40, "K", option}, optionShiftK{40, "K", option | shift};
    struct Case {
        Shortcut shortcut;
        Action action;
        OSVersion version;
        std::string expected;
    };
    const std::vector<Case> cases = {
        {{37, "L", none}, Action::focusBlur, macOS26, noModifier},
        {{37, "L", shift}, Action::focusBlur, v150, noModifier},
        {optionK, Action::focusBlur, v150, onlyOption},
        {optionK, Action::focusBlur, v151, onlyOption},
        {optionShiftK, Action::focusBlur, v151, onlyOption},
        {{40, "K", option | control}, Action::focusBlur, v150, "ok"},
        {optionK, Action::focusBlur, v152, "ok"},
        {optionK, Action::focusBlur, v146, "ok"},
        {optionK, Action::focusBlur, macOS26, "ok"},
        {optionK, Action::focusBlur, other, "ok"},
        // The label does not distinguish combinations, and a used combination is reported before a
        // reserved one.
        {{49, "Blank", control},
         Action::focusBlur,
         macOS26,
         "refused: Already used for Blur Screen."},
        {{37, "L", command}, Action::focusBlur, macOS26, "refused: Already used for Lock Mac."},
        {{37, "L", command | option},
         Action::quickBlur,
         macOS26,
         "refused: Already used for Lock the app in front."},
        {{49, "Space", control},
         Action::quickBlur,
         macOS26,
         "warning: macOS uses this to switch input sources."},
        {{37, "L", command | shift}, Action::focusBlur, macOS26, "ok"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(verdict(c.shortcut, c.action, set, c.version), c.expected)
            << c.shortcut.stored() << " for " << title(c.action);
}

TEST(ShortcutRules, LabelsKeys) {
    const auto label = [](std::uint32_t keyCode, std::optional<std::string> characters) {
        return ShortcutRules::label(keyCode, characters).value_or("none");
    };
    EXPECT_EQ(label(49, " "), "Space");
    EXPECT_EQ(label(36, "x"), "Return") << "a name wins over what was typed";
    EXPECT_EQ(label(123, {}), "←");
    EXPECT_EQ(label(111, {}), "F12");
    EXPECT_EQ(label(0, "a"), "A");
    EXPECT_EQ(label(0, "\n é "), "É");
    EXPECT_EQ(label(0, "e\u0301"), "E\u0301") << "one character of two code points";
    EXPECT_EQ(label(0, "ß"), "none") << "upper-cased it is two";
    EXPECT_EQ(label(0, "ab"), "none");
    EXPECT_EQ(label(0, " "), "none");
    EXPECT_EQ(label(0, {}), "none");
}

TEST(ShortcutRecording, DecidesByKeyAndModifiers) {
    using namespace RecorderDecisions;
    const auto decide = ShortcutRecording::decide;
    EXPECT_EQ(decide(51, none, "\x7f"), RecorderDecision(Clear{}));
    EXPECT_EQ(decide(117, none, {}), RecorderDecision(Clear{}));
    EXPECT_EQ(decide(53, none, {}), RecorderDecision(Cancel{}));
    EXPECT_EQ(decide(51, command, {}), RecorderDecision(Record{{51, "Delete", command}}));
    EXPECT_EQ(decide(53, shift, {}), RecorderDecision(Record{{53, "Esc", shift}}));
    EXPECT_EQ(decide(117, command, {}), RecorderDecision(Ignore{}));
    EXPECT_EQ(decide(117, command, "d"), RecorderDecision(Record{{117, "D", command}}));
    EXPECT_EQ(decide(36, none, "\r"), RecorderDecision(Record{{36, "Return", none}}));
    EXPECT_EQ(decide(0, none, "a"), RecorderDecision(Record{{0, "A", none}}));
    EXPECT_EQ(decide(0, command, {}), RecorderDecision(Ignore{}));
}
