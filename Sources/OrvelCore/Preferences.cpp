#include "OrvelCore/Preferences.h"

#include "OrvelCore/Text.h"

namespace OrvelCore {

namespace {

template <class E>
E enumeration(const SettingsStore& store, std::string_view key, E fallback) {
    const auto text = store.stringForKey(key);
    return text ? fromRawValue<E>(*text).value_or(fallback) : fallback;
}

int intensity(const SettingsStore& store, std::string_view key, bool allowsReadable) {
    const auto stored = store.integerForKey(key);
    return stored ? BlurIntensity::clamped(*stored, allowsReadable) : BlurIntensity::unreadable;
}

std::string shortcutKey(ShortcutSet::Action action) {
    return std::string("shortcut.").append(rawValue(action));
}

}  // namespace

Preferences Preferences::load(const SettingsStore& store) {
    Preferences prefs;
    prefs.lockStyle = enumeration(store, "lockStyle", prefs.lockStyle);
    prefs.tint = enumeration(store, "overlayTint", prefs.tint);
    prefs.lockIntensity = intensity(store, "lockIntensity", false);
    prefs.quickBlurIntensity = intensity(store, "quickBlurIntensity", false);
    prefs.focusBlurIntensity = intensity(store, "focusBlurIntensity", true);
    prefs.showsClock = store.boolForKey("showsClock").value_or(prefs.showsClock);
    // Trim first, so that leading whitespace does not count towards the limit.
    prefs.awayMessage = Text::firstCharacters(
        Text::trim(store.stringForKey("awayMessage").value_or("")), awayMessageLimit);
    prefs.unlocksWithMacOS = store.boolForKey("unlocksWithMacOS").value_or(prefs.unlocksWithMacOS);
    prefs.keepsDisplaysAwake =
        store.boolForKey("keepsDisplaysAwake").value_or(prefs.keepsDisplaysAwake);
    prefs.peekWithOption = store.boolForKey("peekWithOption").value_or(prefs.peekWithOption);
    prefs.showsMenuBarIcon = store.boolForKey("showsMenuBarIcon").value_or(prefs.showsMenuBarIcon);
    prefs.soundsOn = store.boolForKey("soundsOn").value_or(prefs.soundsOn);
    for (const auto action : allCases<ShortcutSet::Action>()) {
        const auto text = store.stringForKey(shortcutKey(action));
        if (!text) continue;
        if (text->empty()) {
            // a stored empty string means that the user removed the shortcut
            prefs.shortcuts[action].reset();
        } else if (const auto shortcut = Shortcut::fromStored(*text)) {
            prefs.shortcuts[action] = shortcut;
        }
    }
    return prefs;
}

void Preferences::save(SettingsStore& store) const {
    store.setString("lockStyle", rawValue(lockStyle));
    store.setString("overlayTint", rawValue(tint));
    store.setInteger("lockIntensity", lockIntensity);
    store.setInteger("quickBlurIntensity", quickBlurIntensity);
    store.setInteger("focusBlurIntensity", focusBlurIntensity);
    store.setBool("showsClock", showsClock);
    store.setString("awayMessage", awayMessage);
    store.setBool("unlocksWithMacOS", unlocksWithMacOS);
    store.setBool("keepsDisplaysAwake", keepsDisplaysAwake);
    store.setBool("peekWithOption", peekWithOption);
    store.setBool("showsMenuBarIcon", showsMenuBarIcon);
    store.setBool("soundsOn", soundsOn);
    for (const auto action : allCases<ShortcutSet::Action>()) {
        const auto& shortcut = shortcuts[action];
        store.setString(shortcutKey(action), shortcut ? shortcut->stored() : "");
    }
}

}  // namespace OrvelCore
