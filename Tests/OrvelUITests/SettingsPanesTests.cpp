#include "OrvelUI/AppChooserModel.h"
#include "OrvelUI/SettingsPanes.h"
#include "OrvelUI/SettingsText.h"
#include "OrvelUITests/FormSketch.h"

using Action = PreferencesModel::Action;
using Corner = PreferencesModel::Corner;

namespace {

struct SettingsPanesTest : testing::Test {
    SettingsModel settings;
    PreferencesModel& model = settings.preferences;
};

std::string text(std::size_t characters) {
    std::string result;
    for (std::size_t i = 0; i < characters; ++i) result += "ñ";
    return result;
}

}  // namespace

TEST_F(SettingsPanesTest, ThePicturesFollowTheSliderWhichASolidStyleLacks) {
    const auto lines = [&] { return sketch(SettingsPanes::lock(model, {})); };
    EXPECT_THAT(lines(), Contains("(Frosted) 28 Ambient 96 Solid 28 solid"));
    const auto form = SettingsPanes::lock(model, {});
    control<IntensitySlider>(form, "lockIntensity").set(50);
    EXPECT_THAT(lines(), Contains("(Frosted) 50 Ambient 96 Solid 50 solid"));
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
