#include "OrvelCore/TriggerSettings.h"

namespace OrvelCore {

namespace {

// 0 is stored for "never", to distinguish it from a missing key, which means the default.
std::optional<double> duration(const SettingsStore& store, std::string_view key,
                               std::optional<double> fallback) {
    const auto seconds = store.doubleForKey(key);
    if (!seconds) return fallback;
    return *seconds > 0 ? seconds : std::nullopt;
}

void saveDuration(SettingsStore& store, std::string_view key, std::optional<double> seconds) {
    if (seconds) {
        store.setDouble(key, *seconds);
    } else {
        store.setInteger(key, 0);
    }
}

}  // namespace

TriggerSettings TriggerSettings::load(const SettingsStore& store) {
    TriggerSettings settings;
    settings.hotCorner = fromRawValue<Corner>(store.stringForKey("hotCorner").value_or(""));
    settings.hotCornerAction =
        fromRawValue<CornerAction>(store.stringForKey("hotCornerAction").value_or(""))
            .value_or(CornerAction::lock);
    settings.idleBlurAfter = duration(store, "idleBlurAfter", settings.idleBlurAfter);
    settings.idleLockAfter = duration(store, "idleLockAfter", settings.idleLockAfter);
    settings.handOffAfter = duration(store, "handOffAfter", settings.handOffAfter);
    settings.locksBeforeSleep =
        store.boolForKey("locksBeforeSleep").value_or(settings.locksBeforeSleep);
    return settings;
}

void TriggerSettings::save(SettingsStore& store) const {
    if (hotCorner) {
        store.setString("hotCorner", rawValue(*hotCorner));
    } else {
        store.remove("hotCorner");
    }
    store.setString("hotCornerAction", rawValue(hotCornerAction));
    saveDuration(store, "idleBlurAfter", idleBlurAfter);
    saveDuration(store, "idleLockAfter", idleLockAfter);
    saveDuration(store, "handOffAfter", handOffAfter);
    store.setBool("locksBeforeSleep", locksBeforeSleep);
}

}  // namespace OrvelCore
