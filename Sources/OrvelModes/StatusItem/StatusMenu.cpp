#include "OrvelModes/StatusItem/StatusMenu.h"

#include <fmt/format.h>

#include "OrvelCore/Brand.h"
#include "OrvelCore/Match.h"
#include "OrvelCore/Text.h"

namespace OrvelModes {

using namespace StatusMenuActions;
using OrvelCore::Shortcut;
using OrvelUI::MenuPanelModel;

const StatusMenuEntry StatusMenuEntry::separator{.kind = Separator{}};

const StatusMenuAction* StatusMenuEntry::action() const {
    const auto* const row = std::get_if<Action>(&kind);
    return row == nullptr ? nullptr : &row->action;
}

namespace {

StatusMenuEntry row(std::string title, StatusMenuAction action,
                    const std::optional<Shortcut>& shortcut = {}) {
    StatusMenuEntry entry{.title = std::move(title),
                          .kind = StatusMenuEntry::Action{std::move(action)}};
    // A menu can show only a single character as the key, not "Space" or "F5".
    if (shortcut && OrvelCore::Text::characterCount(shortcut->key) == 1) {
        entry.key = OrvelCore::Text::lowerCase(shortcut->key);
        entry.modifiers = shortcut->modifiers;
    }
    return entry;
}

StatusMenuEntry label(std::string title, StatusMenuEntry::Kind kind) {
    return {.title = std::move(title), .kind = std::move(kind), .enabled = false};
}

StatusMenuEntry checked(StatusMenuEntry entry, bool on) {
    entry.checked = on;
    return entry;
}

std::vector<StatusMenuEntry> privateApps(const MenuPanelModel& model) {
    std::vector<StatusMenuEntry> rows{
        row(model.privateAppsOn.get() ? "Turn Private Apps Off" : "Turn Private Apps On",
            PrivateApps{})};
    if (!model.privateChoices.get().empty()) rows.push_back(StatusMenuEntry::separator);
    for (const auto& choice : model.privateChoices.get())
        rows.push_back(checked(row(choice.name, PrivateApp{choice.id}), choice.chosen));
    rows.push_back(StatusMenuEntry::separator);
    rows.push_back(row("Add Apps…", AddPrivateApps{}));
    return rows;
}

}  // namespace

std::vector<StatusMenuEntry> StatusMenuContent::entries(const MenuPanelModel& model) {
    const auto& separator = StatusMenuEntry::separator;
    std::vector<StatusMenuEntry> rows{label(model.status(), StatusMenuEntry::Status{}), separator,
                                      row("Lock Mac", LockMac{}, model.lockMacShortcut.get())};
    if (const auto& name = model.frontAppName.get())
        rows.push_back(row("Lock " + *name, LockFront{}, model.lockAppShortcut.get()));
    const auto& offered = model.capabilities;
    if (offered.screenBlur || offered.focusBlur || offered.appCovers) rows.push_back(separator);
    if (offered.screenBlur)
        rows.push_back(checked(row("Blur Screen", QuickBlur{}, model.quickBlurShortcut.get()),
                               model.quickBlurOn.get()));
    if (offered.focusBlur)
        rows.push_back(checked(row("Focus Blur", FocusBlur{}, model.focusBlurShortcut.get()),
                               model.focusBlurOn.get()));
    if (offered.appCovers)
        rows.push_back({.title = "Private Apps",
                        .kind = StatusMenuEntry::Submenu{},
                        .checked = model.privateAppsOn.get(),
                        .children = privateApps(model)});
    if (!model.lockedApps.get().empty()) {
        rows.push_back(separator);
        rows.push_back(label("Locked Apps", StatusMenuEntry::Header{}));
    }
    for (const auto& app : model.lockedApps.get())
        rows.push_back(row("Unlock " + app.name, Unlock{app.id}));
    if (const auto& version = model.updateVersion.get()) {
        rows.push_back(separator);
        rows.push_back(row(fmt::format("Install Version {}…", *version), InstallUpdate{}));
    }
    rows.push_back(separator);
    rows.push_back(row("Settings…", OpenSettings{},
                       Shortcut{.key = ",", .modifiers = Shortcut::Modifiers::command}));
    rows.push_back(row(fmt::format("Quit {}", OrvelCore::Brand::name), Quit{},
                       Shortcut{.key = "q", .modifiers = Shortcut::Modifiers::command}));
    rows.back().enabled = model.canQuit();
    return rows;
}

void StatusMenuController::rebuild() {
    menu_ = StatusMenuContent::entries(model_);
}

void StatusMenuController::menuNeedsUpdate() {
    onWillOpen();
    rebuild();
}

void StatusMenuController::perform(const StatusMenuAction& action) {
    OrvelCore::match(
        action, [this](const PrivateApp& app) { model_.onTogglePrivateApp(app.bundleID); },
        [this](const Unlock& unlock) { model_.onUnlock(unlock.pid); },
        [this](LockMac) { model_.onLockMac(); }, [this](LockFront) { model_.onLockFront(); },
        [this](QuickBlur) { model_.onToggleQuickBlur(); },
        [this](FocusBlur) { model_.onToggleFocusBlur(); },
        [this](PrivateApps) { model_.onTogglePrivateApps(); },
        [this](AddPrivateApps) { onAddPrivateApps(); },
        [this](InstallUpdate) { model_.onInstallUpdate(); },
        [this](OpenSettings) { model_.onOpenSettings(); }, [this](Quit) { model_.onQuit(); });
}

}  // namespace OrvelModes
