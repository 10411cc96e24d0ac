#include "OrvelCore/Looks.h"
#include "OrvelCore/PrivateAppList.h"
#include "OrvelCore/TriggerSettings.h"

namespace {

Preferences changedEverywhere() {
    Preferences prefs;
    prefs.lockStyle = LockStyle::ambient;
    prefs.lockIntensity = 40;
    prefs.quickBlurIntensity = 41;
    prefs.focusBlurIntensity = 9;
    prefs.tint = OverlayTint::light;
    prefs.showsClock = false;
    prefs.awayMessage = "Back soon";
    prefs.unlocksWithMacOS = false;
    prefs.keepsDisplaysAwake = true;
    prefs.peekWithOption = false;
    prefs.showsMenuBarIcon = false;
    prefs.soundsOn = true;
    prefs.shortcuts.lockMac.reset();
    prefs.shortcuts.focusBlur = Shortcut{40, "K", Shortcut::Modifiers::control};
    return prefs;
}

}  // namespace

TEST(Preferences, DefaultsForAnEmptyStoreAndForValuesOfTheWrongType) {
    InMemorySettingsStore store;
    EXPECT_EQ(Preferences::load(store), Preferences());
    changedEverywhere().save(store);
    for (const char* key : {"lockStyle", "overlayTint", "awayMessage", "shortcut.lockMac",
                            "shortcut.lockApp", "shortcut.quickBlur", "shortcut.focusBlur"})
        store.setInteger(key, 1);
    for (const char* key : {"lockIntensity", "quickBlurIntensity", "focusBlurIntensity",
                            "showsClock", "unlocksWithMacOS", "keepsDisplaysAwake",
                            "peekWithOption", "showsMenuBarIcon", "soundsOn"})
        store.setString(key, "1");
    EXPECT_EQ(Preferences::load(store), Preferences());
}

TEST(Preferences, SurviveInTheStore) {
    InMemorySettingsStore store;
    changedEverywhere().save(store);
    EXPECT_EQ(Preferences::load(store), changedEverywhere());
    EXPECT_EQ(store.stringForKey("lockStyle"), "ambient");
    EXPECT_EQ(store.stringForKey("overlayTint"), "light");
    EXPECT_EQ(store.stringForKey("shortcut.lockMac"), "");
    EXPECT_EQ(store.stringForKey("shortcut.lockApp"), "37:3:L");

    Preferences odd;  // saving neither trims nor clamps
    odd.lockIntensity = 3;
    odd.awayMessage = "  x";
    odd.save(store);
    EXPECT_EQ(store.integerForKey("lockIntensity"), 3);
    EXPECT_EQ(store.stringForKey("awayMessage"), "  x");
}

TEST(Preferences, ForgiveWhatTheStoreHolds) {
    InMemorySettingsStore store;
    store.setString("lockStyle", "Solid");
    store.setString("overlayTint", "blue");
    store.setInteger("lockIntensity", 20);
    store.setInteger("quickBlurIntensity", INT64_MAX);
    store.setInteger("focusBlurIntensity", 3);
    store.setString("awayMessage", "  " + std::string(70, 'x') + " ");
    store.setString("shortcut.lockMac", "rubbish");
    store.setString("shortcut.lockApp", "");
    store.setString("shortcut.focusBlur", "rubbish");
    store.setString("shortcut.quickBlur", "11:1:B");
    auto prefs = Preferences::load(store);
    EXPECT_EQ(prefs.lockStyle, LockStyle::frosted);
    EXPECT_EQ(prefs.tint, OverlayTint::automatic);
    EXPECT_EQ(prefs.lockIntensity, 28);
    EXPECT_EQ(prefs.quickBlurIntensity, 64);
    EXPECT_EQ(prefs.focusBlurIntensity, 8);
    EXPECT_EQ(prefs.awayMessage, std::string(60, 'x'));
    EXPECT_EQ(prefs.shortcuts.lockMac, Shortcut::lockMac());
    EXPECT_FALSE(prefs.shortcuts.lockApp);
    EXPECT_FALSE(prefs.shortcuts.focusBlur);
    EXPECT_EQ(prefs.shortcuts.quickBlur, (Shortcut{11, "B", {1}}));

    store.setInteger("focusBlurIntensity", 20);
    store.setInteger("quickBlurIntensity", INT64_MIN);
    prefs = Preferences::load(store);
    EXPECT_EQ(prefs.focusBlurIntensity, 20);
    EXPECT_EQ(prefs.quickBlurIntensity, 28);
}

TEST(Looks, FollowStyleTintAndTheSystem) {
    using enum OverlayLook::Tone;
    Preferences prefs;
    EXPECT_EQ(Looks::lock(prefs, false, true), OverlayLook::standardLock);
    EXPECT_EQ(Looks::quickBlur(prefs, false, true), OverlayLook::standardMode);
    EXPECT_EQ(Looks::focusBlur(prefs, true, false), (OverlayLook{28, light, 0.3, true}));

    prefs.lockIntensity = prefs.quickBlurIntensity = prefs.focusBlurIntensity = 10;
    prefs.tint = OverlayTint::light;
    EXPECT_EQ(Looks::lock(prefs, true, true), (OverlayLook{28, light, 0.45, true}));
    EXPECT_EQ(Looks::quickBlur(prefs, true, true), (OverlayLook{28, light, 0.3, true}));
    EXPECT_EQ(Looks::focusBlur(prefs, false, true), (OverlayLook{10, light, 0.3, false}));

    prefs.tint = OverlayTint::dark;
    prefs.lockIntensity = 50;
    prefs.lockStyle = LockStyle::solid;
    EXPECT_EQ(Looks::lock(prefs, false, false), (OverlayLook{50, dark, 0.45, true}));
    prefs.lockStyle = LockStyle::ambient;
    EXPECT_EQ(Looks::lock(prefs, false, false), (OverlayLook{96, dark, 0.7, false}));
    EXPECT_EQ(Looks::lock(prefs, true, false), (OverlayLook{96, dark, 0.7, true}));
}

TEST(PrivateAppList, NeverHoldsTheProgramNorAnAppTwice) {
    const std::string own = "com.brindlewick.karvo";
    PrivateAppList list({"a", own, "b", "a"}, false);
    EXPECT_THAT(list.bundleIDs(), ElementsAre("a", "b"));
    EXPECT_FALSE(list.enabled);
    list.toggle(own);
    list.toggle("c");
    list.toggle("a");
    EXPECT_THAT(list.bundleIDs(), ElementsAre("b", "c"));
    EXPECT_TRUE(list.contains("b"));
    EXPECT_FALSE(list.contains("B"));
    EXPECT_FALSE(list.enabled);
}

TEST(TriggerSettings, SurviveInTheStore) {
    InMemorySettingsStore store;
    EXPECT_EQ(TriggerSettings::load(store), TriggerSettings());
    TriggerSettings settings;
    settings.hotCorner = TriggerSettings::Corner::bottomLeft;
    settings.hotCornerAction = TriggerSettings::CornerAction::quickBlur;
    settings.idleBlurAfter = 30;
    settings.idleLockAfter = 0.5;
    settings.handOffAfter.reset();
    settings.locksBeforeSleep = false;
    settings.save(store);
    EXPECT_EQ(TriggerSettings::load(store), settings);
    EXPECT_EQ(settings.idle(), (IdleSettings{30, 0.5}));
    EXPECT_EQ(store.integerForKey("handOffAfter"), 0) << "never is not the same as missing";
    TriggerSettings().save(store);
    EXPECT_FALSE(store.has("hotCorner"));
    EXPECT_EQ(TriggerSettings::load(store), TriggerSettings());
}

TEST(TriggerSettings, ForgiveWhatTheStoreHolds) {
    InMemorySettingsStore store;
    store.setString("hotCorner", "top");
    store.setString("hotCornerAction", "QuickBlur");
    store.setDouble("idleBlurAfter", -5);
    store.setInteger("idleLockAfter", 120);
    store.setString("handOffAfter", "0");
    TriggerSettings expected;
    expected.idleLockAfter = 120;
    EXPECT_EQ(TriggerSettings::load(store), expected);
}
