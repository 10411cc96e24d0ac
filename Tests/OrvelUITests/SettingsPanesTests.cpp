#include "OrvelCore/AttemptText.h"
#include "OrvelUI/AppChooserModel.h"
#include "OrvelUI/SettingsPanes.h"
#include "OrvelUI/SettingsText.h"
#include "OrvelUITests/FormSketch.h"

using namespace OrvelUI;
using OrvelCore::LockStyle;
using OrvelCore::Preferences;
using OrvelCore::TriggerSettings;
using Action = PreferencesModel::Action;
using Corner = PreferencesModel::Corner;

namespace {

const OrvelCore::Date now = OrvelCore::dateFromSecondsSince1970(1'795'000'000);

struct SettingsPanesTest : testing::Test {
    SettingsModel settings;
    PreferencesModel& model = settings.preferences;
    std::vector<std::string> heard;
};

std::string text(std::size_t characters) {
    std::string result;
    for (std::size_t i = 0; i < characters; ++i) result += "ñ";
    return result;
}

}  // namespace

TEST_F(SettingsPanesTest, Lock) {
    const auto lines = [&](SettingsTheme::Scheme scheme = SettingsTheme::Scheme::light) {
        return sketch(SettingsPanes::lock(model, {.scheme = scheme}));
    };
    EXPECT_THAT(
        lines(),
        ElementsAre("# Style", "(Frosted) 28 Ambient 96 Solid 28 solid", "Blur: 28 of 28 to 64",
                    "^ Never softer than the point where text becomes unreadable.",
                    "<Preview Lock>", "# Lock screen", "[x] Show the clock",
                    "Away message: __Back at 3:30", "# Hand-off to the macOS lock",
                    "Also lock macOS after: 5 min 15 min (30 min) 1 hour Never",
                    "[x] Unlock Karvo when my Mac unlocks", "[ ] Keep displays awake while locked",
                    "# Failed attempts", "No wrong passwords in the last 30 days."));
    model.onPreviewLock = [&] { heard.push_back("preview"); };
    const auto form = SettingsPanes::lock(model, {});
    control<RowActions>(form, "preview").buttons[0].press();
    EXPECT_THAT(heard, ElementsAre("preview"));
    control<IntensitySlider>(form, "lockIntensity").set(50);
    EXPECT_THAT(lines(), Contains("(Frosted) 50 Ambient 96 Solid 50 solid"))
        << "the pictures follow the slider";
    const auto toneAt = [&](SettingsTheme::Scheme scheme) {
        return control<StyleThumbnails>(SettingsPanes::lock(model, {.scheme = scheme}), "lockStyle")
            .styles[0]
            .look.tone;
    };
    EXPECT_NE(toneAt(SettingsTheme::Scheme::dark), toneAt(SettingsTheme::Scheme::light));
    for (const auto style : {LockStyle::ambient, LockStyle::solid}) {
        control<StyleThumbnails>(form, "lockStyle")
            .styles[static_cast<std::size_t>(style)]
            .choose();
        EXPECT_EQ(model.prefs.get().lockStyle, style);
        const auto hasSlider = Contains("Blur: 50 of 28 to 64");
        EXPECT_EQ(testing::Matches(hasSlider)(lines()), style != LockStyle::solid);
    }
}

TEST_F(SettingsPanesTest, WhatTheSessionDecidesIsShownOrNot) {
    model.capabilities.idleTime = false;
    const auto blur = [&] { return sketch(SettingsPanes::blur(model)); };
    EXPECT_THAT(blur(), Not(Contains("# When you step away")));
    model.offersLockBeforeSleep.set(true);
    EXPECT_THAT(blur(), Contains("[x] Lock when the computer sleeps"));
    control<SettingsSwitch>(SettingsPanes::blur(model), "locksBeforeSleep").set(false);
    EXPECT_FALSE(model.triggers.get().locksBeforeSleep);
    // Nothing covers a hidden window, so there is nothing to peek at.
    const auto privateApps = [&] { return sketch(SettingsPanes::privateApps(model)); };
    EXPECT_THAT(privateApps(), Contains(testing::HasSubstr("Hold Option")));
    model.capabilities.hidesApps = true;
    EXPECT_THAT(privateApps(), Not(Contains(testing::HasSubstr("Hold Option"))));
    EXPECT_THAT(privateApps(), Contains("# Hidden unless you are using them"));
    model.passwordSuffices.set(false);
    EXPECT_EQ(sketch(SettingsPanes::lock(model, {})).front(), SettingsText::noPasswordField());
}

TEST_F(SettingsPanesTest, KeepsAHandOffTimeThatIsNotOffered) {
    const auto strip = [&] {
        return control<ChoiceStrip>(SettingsPanes::lock(model, {}), "handOffAfter").chips;
    };
    model.change(&TriggerSettings::handOffAfter, std::optional<double>(1234));
    for (const auto& chip : strip()) EXPECT_FALSE(chip.chosen);
    EXPECT_EQ(model.triggers.get().handOffAfter, 1234);
    strip().back().choose();
    EXPECT_EQ(model.triggers.get().handOffAfter, std::nullopt);
    EXPECT_TRUE(strip().back().chosen);
}

TEST_F(SettingsPanesTest, FailedAttemptsAreCut) {
    model.locale.set({"en_GB"});
    model.timeZone.set({"UTC"});
    model.now.set(now);
    for (const auto& [count, more] :
         {std::pair(1, ""), std::pair(8, ""), std::pair(9, "^ And 1 more in the last 30 days."),
          std::pair(40, "^ And 32 more in the last 30 days.")}) {
        std::vector<OrvelCore::Date> dates;
        for (int i = 0; i < count; ++i) dates.push_back(now - OrvelCore::Seconds(60.0 * i));
        model.attempts.set(dates);
        auto lines = sketch(SettingsPanes::lock(model, {}));
        lines.erase(lines.begin(), std::ranges::find(lines, "# Failed attempts") + 1);
        EXPECT_EQ(lines.size(), static_cast<std::size_t>(std::min(count, 8)) + (*more ? 1 : 0));
        EXPECT_EQ(lines.front(), OrvelCore::AttemptText::historyLine(now, now, {"en_GB"}, {"UTC"}));
        EXPECT_TRUE(lines.back() == more || *more == '\0');
    }
}

TEST_F(SettingsPanesTest, AwayMessageKeepsWhatTheCardHasRoomFor) {
    const auto form = SettingsPanes::lock(model, {});
    const auto& field = control<TextField>(form, "awayMessage");
    const std::pair<std::string, std::string> rows[] = {
        {"Back at ", "Back at "},
        {text(60), text(60)},
        {text(61), text(60)},
        {"  " + text(60), text(60)},
        {text(10000), text(60)},
        {std::string(70, ' ') + "x", "x"},
        {"e\u0301" + text(59), "e\u0301" + text(59)}};
    for (const auto& [typed, kept] : rows) {
        EXPECT_EQ(field.type(typed), kept);
        EXPECT_EQ(model.prefs.get().awayMessage, kept);
    }
    field.type("  Back soon ");
    field.finish();
    EXPECT_EQ(model.prefs.get().awayMessage, "Back soon");
}

TEST_F(SettingsPanesTest, ModelsTellOfChangesOnly) {
    model.onChange = [&](const Preferences& prefs) { heard.push_back(prefs.awayMessage); };
    model.onTriggersChange = [&](const auto&) { heard.push_back("triggers"); };
    settings.onPaneChange = [&] { heard.emplace_back(title(settings.pane.get())); };
    model.prefs.set(Preferences{});
    model.triggers.set(TriggerSettings{});
    settings.pane.set(SettingsPane::general);
    EXPECT_THAT(heard, IsEmpty());
    model.change(&Preferences::awayMessage, std::string("x"));
    model.pick(Corner::topLeft);
    const auto sidebar = SettingsSidebar::of(settings);
    sidebar.items[4].choose();
    sidebar.items[4].choose();
    EXPECT_THAT(heard, ElementsAre("x", "triggers", "Shortcuts"));
    for (const auto& item : sidebar.items) heard.push_back(item.title + " " + item.symbol);
    heard.erase(heard.begin(), heard.begin() + 3);
    EXPECT_THAT(heard,
                ElementsAre("General gearshape", "Lock lock", "Blur drop",
                            "Private Apps hand.raised", "Shortcuts command", "About info.circle"));
}

TEST(AppChooser, FindsByEveryWord) {
    AppChooserModel model({{"a", "Text Editor"}, {"b", "ÉDITEUR de texte"}, {"c", "Terminal"}});
    const auto names = [&](const std::string& query) {
        model.query.set(query);
        std::string ids;
        for (const auto& app : model.matches()) ids += app.bundleID;
        return ids;
    };
    const std::pair<const char*, const char*> rows[] = {
        {"", "abc"}, {"  ", "abc"}, {"te", "abc"}, {"TE edi", "a"}, {"édi", "b"}, {"zz", ""}};
    for (const auto& [query, found] : rows) EXPECT_EQ(names(query), found) << query;
    for (const auto* id : {"c", "a", "b", "b", "vanished"}) model.toggle(id);
    EXPECT_THAT(model.result(), ElementsAre("a", "c"));
}
