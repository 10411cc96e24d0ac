#pragma once

#include "OrvelUI/MenuPanelModel.h"

/// Adds what is chosen in a menu to `log`.
inline void logChoices(MenuPanelModel& model, std::vector<std::string>& log) {
    const auto note = [&log](const char* what) { return [&log, what] { log.emplace_back(what); }; };
    model.onLockMac = note("lockMac");
    model.onLockFront = note("lockFront");
    model.onToggleQuickBlur = note("quickBlur");
    model.onToggleFocusBlur = note("focusBlur");
    model.onTogglePrivateApps = note("privateApps");
    model.onTogglePrivateApp = [&log](const std::string& id) { log.push_back(id); };
    model.onUnlock = [&log](std::int64_t pid) { log.push_back(std::to_string(pid)); };
    model.onOpenSettings = note("settings");
    model.onInstallUpdate = note("install");
    model.onQuit = note("quit");
}
