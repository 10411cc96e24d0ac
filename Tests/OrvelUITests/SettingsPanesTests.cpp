#include <gmock/gmock.h>

#include "OrvelCore/AttemptText.h"
#include "OrvelUI/AppChooserModel.h"
#include "OrvelUI/SettingsPanes.h"
#include "OrvelUI/SettingsText.h"

#include "FormSketch.h"

using namespace OrvelUI;
using OrvelCore::LockStyle;
using OrvelCore::Preferences;
using OrvelCore::Shortcut;
using OrvelCore::TriggerSettings;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
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

TEST_F(SettingsPanesTest, General) {
    EXPECT_THAT(
        sketch(SettingsPanes::general(model)),
        ElementsAre(
            "[ ] Open Karvo when you log in", "[x] Show the icon in the menu bar",
            "[ ] Play sounds when you lock and unlock",
            "^ Silent while your Mac's interface sounds are off.",
            "Overlay tint: (Auto) Light Dark",
            "^ The colour laid over the blur when you lock or blur the screen. Auto follows "
            "your Mac's appearance."));
    model.onSetLaunchAtLogin = [&](bool on) { heard.push_back(on ? "login on" : "login off"); };
    const auto form = SettingsPanes::general(model);
    control<SettingsSwitch>(form, "launchAtLogin").set(true);
    EXPECT_FALSE(model.launchAtLogin.get()) << "only the owner knows what became of it";
    control<SettingsSwitch>(form, "showsMenuBarIcon").set(false);
    control<ChoiceStrip>(form, "tint").chips[2].choose();
    EXPECT_EQ(model.prefs.get().tint, OrvelCore::OverlayTint::dark);
    EXPECT_THAT(heard, ElementsAre("login on"));
    EXPECT_THAT(sketch(SettingsPanes::general(model)),
                Contains("^ With the icon hidden, open Karvo from Applications to come back here. "
                         "Your shortcuts keep working."));
}

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

TEST_F(SettingsPanesTest, HandOffStandsWhateverItIs) {
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

TEST_F(SettingsPanesTest, Blur) {
    EXPECT_THAT(
        sketch(SettingsPanes::blur(model)),
        ElementsAre(
            "# Intensity", "Blur Screen: 28 of 28 to 64",
            "Focus Blur: 28 of 8 to 64, unreadable from 28",
            "^ Blur Screen never goes softer than unreadable. Focus Blur can, to keep the outline "
            "of other windows.",
            "# When you step away", "Blur the screen after: (Off) 30 sec 1 min 2 min 5 min",
            "Lock after: (Off) 2 min 5 min 10 min 15 min 30 min",
            "^ The blur is for short breaks: any key or mouse move clears it. Both wait while a "
            "video, a call or a slideshow keeps the display awake.",
            "# Hot corner", "Top left Top right Bottom left Bottom right",
            "^ Pick a corner to turn it on."));
    model.macOSCorners.set({Corner::topLeft});
    const auto picker = control<CornerPicker>(SettingsPanes::blur(model), "hotCorner");
    picker.targets[1].pick();
    auto lines = sketch(SettingsPanes::blur(model));
    EXPECT_THAT(lines, Contains("Top left! (Top right) Bottom left Bottom right"));
    EXPECT_THAT(lines, Contains("Corner action: (Lock Mac) Blur Screen"));
    EXPECT_EQ(lines.back(), "^ Pick the same corner again to turn it off.");
    EXPECT_THAT(lines, Not(Contains(std::string("! ") + SettingsText::cornerWarning)));
    picker.targets[0].pick();
    EXPECT_THAT(sketch(SettingsPanes::blur(model)),
                Contains(std::string("! ") + SettingsText::cornerWarning));
    picker.targets[0].pick();
    EXPECT_EQ(model.triggers.get().hotCorner, std::nullopt);
}

TEST_F(SettingsPanesTest, PrivateApps) {
    const std::vector<std::string> end{
        "[x] Hold Option over a blurred app to peek", "# Notifications",
        "Notification banners from private apps are not blurred. Turn off their previews to keep "
        "them private.",
        "<Open Notifications Settings…>"};
    const auto lines = [&] { return sketch(SettingsPanes::privateApps(model)); };
    const auto with = [&](std::vector<std::string> start) {
        start.insert(start.end(), end.begin(), end.end());
        return start;
    };
    EXPECT_EQ(lines(),
              with({"# Blurred unless you are using them",
                    "No apps yet. Chat and mail apps are the usual choice.", "<Add App…>"}));
    model.privateApps.set({{.id = "a", .name = "Signal"}});
    model.addableApps.set({{.id = "b", .name = "Mac Mail"}});
    control<RowActions>(SettingsPanes::privateApps(model), "add").buttons[0].press();
    EXPECT_EQ(lines(),
              with({"# Blurred unless you are using them", "Signal <Remove>", "# Running apps",
                    "Mac Mail <Add>", "<Choose from Applications…> <Done>"}));
    for (auto* closure : {&model.onAddApp, &model.onRemoveApp})
        *closure = [&](const std::string& id) { heard.push_back(id); };
    const auto form = SettingsPanes::privateApps(model);
    control<RowActions>(form, "private:a").buttons[0].press();
    control<RowActions>(form, "addable:b").buttons[0].press();
    EXPECT_THAT(heard, ElementsAre("a", "b"));
    EXPECT_TRUE(control<RowActions>(form, "addable:b").buttons[0].verbatim)
        << "nobody rewords the name of an app";
    control<RowActions>(form, "choose").buttons[1].press();
    EXPECT_FALSE(model.showsAddableApps.get());
}

TEST_F(SettingsPanesTest, Shortcuts) {
    const std::string intro =
        "^ Click Record, then press the keys. Esc cancels, Delete removes the shortcut.";
    const auto lines = [&] { return sketch(SettingsPanes::shortcuts(model)); };
    EXPECT_THAT(lines(), ElementsAre(intro, "Lock Mac ⌘L <Clear> <Record>",
                                     "Lock the app in front ⌥⌘L <Clear> <Record>",
                                     "Blur Screen None <Record>", "Focus Blur None <Record>"));
    model.recording.set(Action::lockApp);
    model.shortcutNotes.set({{Action::lockMac, "Fine."}, {Action::focusBlur, "No."}});
    model.refusedNotes.set({Action::focusBlur});
    EXPECT_THAT(lines(),
                ElementsAre(intro, "Lock Mac ⌘L <Clear> <Record>", "^ Fine.",
                            "Lock the app in front Press the keys… <Cancel>",
                            "Blur Screen None <Record>", "Focus Blur None <Record>", "! No."));
    model.onRecord = [&](Action action) { heard.emplace_back(OrvelCore::rawValue(action)); };
    model.onClearShortcut = [&](Action action) { heard.emplace_back(OrvelCore::title(action)); };
    model.onStopRecording = [&] { heard.push_back("stop"); };
    const auto form = SettingsPanes::shortcuts(model);
    control<RowActions>(form, "shortcut:lockMac").buttons[0].press();
    control<RowActions>(form, "shortcut:lockMac").buttons[1].press();
    control<RowActions>(form, "shortcut:lockApp").buttons[0].press();
    EXPECT_THAT(heard, ElementsAre("Lock Mac", "lockMac", "stop"));
}

TEST_F(SettingsPanesTest, About) {
    auto& about = settings.about;
    about.version.set("1.4 (212)");
    about.updateStatus.set("Up to date.");
    EXPECT_THAT(sketch(SettingsPanes::about(about)),
                ElementsAre("Karvo <Email Support>", "^ Version 1.4 (212)", "# Updates",
                            "Up to date. <Check Now>", "[x] Check for updates automatically",
                            "# Privacy", AboutPaneModel::privacy(), "<Uninstall Karvo…>"));
    about.checking.set(true);
    EXPECT_THAT(sketch(SettingsPanes::about(about)), Contains("Up to date. ... <Cancel>"));
    about.checking.set(false);
    about.updateReady.set(true);
    EXPECT_THAT(sketch(SettingsPanes::about(about)), Contains("Up to date. <Install> <Check Now>"));
    about.onSetAutomatic = [&](bool on) {
        EXPECT_EQ(about.automaticChecks.get(), on);
        heard.push_back(on ? "on" : "off");
    };
    const auto form = SettingsPanes::about(about);
    control<SettingsSwitch>(form, "automatic").set(false);
    control<SettingsSwitch>(form, "automatic").set(false);
    EXPECT_THAT(heard, ElementsAre("off"));
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

TEST(IntensitySlider, IsSpokenWithItsMeaning) {
    EXPECT_EQ(IntensitySlider::spokenValue(28, std::nullopt), "28");
    EXPECT_EQ(IntensitySlider::spokenValue(28, 28), "28, unreadable");
    EXPECT_EQ(IntensitySlider::spokenValue(27, 28), "27, large text may be readable");
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
