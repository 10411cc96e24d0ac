#include "OrvelCore/OnboardingText.h"
#include "OrvelSystem/Linux/DesktopShortcuts.h"
#include "OrvelUI/AccessibilityText.h"
#include "OrvelUI/Alert.h"
#include "OrvelUI/CardContent.h"
#include "OrvelUI/Linux/Wording.h"
#include "OrvelUI/LockFeedback.h"
#include "OrvelUI/MenuBarDrawing.h"
#include "OrvelUI/SettingsPanes.h"
#include "OrvelUITests/Cards.h"
#include "OrvelUITests/FormSketch.h"

namespace {

void collect(std::vector<std::string>& texts, const CardBodyContent& body) {
    texts.insert(texts.end(), {body.caption.text, body.field.placeholder, body.field.accessibleName,
                               body.field.accessibleHint, body.indicator.accessibleName,
                               body.indicator.accessibleHint});
}

void collectWindows(std::vector<std::string>& texts) {
    const auto add = [&](const std::vector<std::string>& more) {
        texts.insert(texts.end(), more.begin(), more.end());
    };
    add(OnboardingText::all());
    for (const auto& alert : {Alert::uninstallQuestion(), Alert::leftInApplications()})
        add({alert.message, alert.informative});
    for (const bool hidden : {true, false}) texts.push_back(MenuBarDrawing{hidden}.label());
    SettingsModel model;
    auto& preferences = model.preferences;
    using Corner = PreferencesModel::Corner;
    preferences.macOSCorners.set({Corner::topLeft});
    preferences.pick(Corner::topLeft);
    preferences.change(&Preferences::showsMenuBarIcon, false);
    for (const auto pane : allCases<SettingsPane>()) {
        model.pane.set(pane);
        add(sketch(SettingsPanes::current(model, {})));
    }
    const auto blur = SettingsPanes::blur(preferences);
    for (const auto& target : control<CornerPicker>(blur, "hotCorner").targets)
        texts.push_back(target.hint);
}

/// Every text that this module can show, except texts that users have written.
std::vector<std::string> everyText() {
    auto texts = AccessibilityText::all();
    collectWindows(texts);
    for (const bool touchID : {true, false}) {
        texts.push_back(LockFeedback::lockedAnnouncement(touchID));
        for (const auto& status : everyStatus())
            for (const bool hasKeyboard : {true, false}) {
                Card card(touchID);
                card.model.status.set(status);
                card.model.hasKeyboard.set(hasKeyboard);
                const auto island = LockIslandContent::of(card.model, {}, false);
                texts.push_back(island.accessibleName);
                collect(texts, island.body);
                const auto badge = AppLockBadgeContent::of(card.model, true);
                texts.insert(texts.end(), {badge.accessibleName, badge.accessibleHint});
                collect(texts, *badge.body);
                for (const auto& effect : LockFeedback::effects(LockFeedback::StatusChanged{status},
                                                                true, true, cardTime))
                    if (const auto* said = std::get_if<LockFeedback::Announce>(&effect))
                        texts.push_back(said->text);
            }
    }
    return texts;
}

}  // namespace

TEST(Wording, NoTextSpeaksOfAMac) {
    for (const auto& text : everyText()) {
        const auto shown = Wording::shown(text);
        for (const auto* word : {"Touch ID", "Mac", "Command", "Option", "macOS", "menu bar",
                                 "System Settings", "Trash", "the the"})
            EXPECT_THAT(shown, Not(HasSubstr(word))) << text;
        EXPECT_EQ(Wording::shown(shown), shown) << "words of the desktop stay as they are";
    }
}

TEST(Wording, SentencesStaySentences) {
    const std::pair<std::string, std::string> rows[] = {
        {"Touch ID or password", "Fingerprint or password"},
        {"Screen locked by Karvo. Use Touch ID, or type your Mac password.",
         "Screen locked by Karvo. Use your fingerprint, or type your account password."},
        {"Unlock Karvo when my Mac unlocks", "Unlock Karvo when my session unlocks"},
        {"Add Command, Control or Option, so the shortcut never takes a key from your typing.",
         "Add Super, Control or Alt, so the shortcut never takes a key from your typing."},
        {"Hand-off to the macOS lock", "Hand-off to the desktop's own lock"},
        {"Machines, Optional, Commander", "Machines, Optional, Commander"},
        {"", ""}};
    for (const auto& [mac, here] : rows) EXPECT_EQ(Wording::shown(mac), here);
    for (const auto& [keyCode, modifiers, note] : DesktopShortcuts::reserved())
        EXPECT_EQ(Wording::shown(note), note) << "written for this desktop";
    EXPECT_EQ(Wording::keycap("⌘"), "Super");
    EXPECT_EQ(Wording::keycap("L"), "L");
}
