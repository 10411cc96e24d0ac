#pragma once

#include <chrono>

#include "OrvelUI/MenuPanelModel.h"

/// Makes the menu show every row that it has. An app was locked three minutes before `now`.
inline void fill(OrvelUI::MenuPanelModel& model, OrvelCore::Date now) {
    model.frontAppName.set("Mail");
    model.privateAppsOn.set(true);
    model.privateChoices.set(
        {{.id = "org.a", .name = "Files"}, {.id = "org.b", .name = "Signal", .chosen = true}});
    model.showsPrivateChoices.set(true);
    model.lockedApps.set({{.id = 7, .name = "Notes", .since = now - std::chrono::minutes(3)}});
    model.now.set(now);
    model.lockMacShortcut.set(OrvelCore::Shortcut::lockMac());
    model.updateVersion.set("2.1");
    model.restartWaits.set(true);
}
