#include "OrvelApp/AppDelegate.h"
#include "OrvelCore/MenuRules.h"
#include "OrvelModes/StatusItem/MenuPanelFeed.h"

namespace OrvelApp {

using namespace OrvelCore;
using OrvelModes::MenuPanelFeed::Locked;
using OrvelUpdates::UpdateController;

void AppDelegate::installStatusItem() {
    panelModel_ = std::make_unique<OrvelUI::MenuPanelModel>();
    panelModel_->capabilities = system_.capabilities;
    statusMenu_ = std::make_unique<OrvelModes::StatusMenuController>(*panelModel_);
    panelPresenter_ = std::make_unique<OrvelModes::MenuPanelPresenter>(*panelModel_, system_.loop,
                                                                       system_.menu.panel);
    statusItem_ = system_.menu.makeStatusItem(*statusMenu_);
    statusMenu_->onWillOpen = panelPresenter_->onWillOpen = [this] {
        panelFront_ = system_.menu.front();
        fillPanel();
    };
    statusItem_->onClick = [this](const OrvelModes::StatusItem::Click& click) {
        if (!system_.capabilities.menuPanel) return settings_.show();
        panelPresenter_->toggle(
            click.anchor, click.screen,
            MenuPanelKeyboard::takesKeyboard(system_.menu.screenReaderOn(),
                                             system_.menu.fullKeyboardAccess(), click.byMouse));
    };

    statusMenu_->onAddPrivateApps = [this] { settings_.show(OrvelUI::SettingsPane::privateApps); };

    auto& model = *panelModel_;
    model.onLockMac = [this] { lockNow(false); };
    model.onLockFront = [this] {
        if (panelFrontPID_) appLock_->lock(*panelFrontPID_);
    };
    model.onToggleQuickBlur = [this] { switchQuickBlur(URLCommands::Switch::toggle); };
    model.onToggleFocusBlur = [this] { switchFocusBlur(URLCommands::Switch::toggle); };
    model.onTogglePrivateApps = [this] { setPrivateApps(URLCommands::Switch::toggle); };
    model.onTogglePrivateApp = [this](const std::string& bundleID) {
        privateApps_->toggle(bundleID);
        refreshPrivateAppRows();
        stateChanged();
    };
    model.onUnlock = [this](std::int64_t pid) { appLock_->requestUnlock(pid); };
    model.onOpenSettings = [this] { settings_.show(); };
    model.onInstallUpdate = [this] { installUpdate(); };
    model.onQuit = [this] { system_.menu.quit(); };
}

void AppDelegate::refreshIcon() {
    if (!statusItem_) return;
    const auto& privateApps = privateApps_->list();
    statusItem_->setState(MenuBarIconRules::state(
        macCovered_, quickBlur_->isBlurred(), focusBlur_->isOn(),
        privateApps.enabled && !privateApps.bundleIDs().empty(), appLocks()));
}

void AppDelegate::stateChanged() {
    refreshIcon();
    if (panelPresenter_ && panelPresenter_->isOpen()) fillPanel();
}

void AppDelegate::fillPanel() {
    std::vector<Locked> locked;
    for (const auto pid : appLock_->lockedPIDs()) {
        const auto app = system_.menu.app(pid);
        const auto since = appLock_->lockedSince(pid);
        if (app && since) locked.push_back({*app, *since});
    }
    panelFrontPID_ = OrvelModes::MenuPanelFeed::fill(
        *panelModel_, {.front = panelFront_,
                       .locked = std::move(locked),
                       .privateList = privateApps_->list(),
                       .running = system_.covers.running(),
                       .shortcuts = prefs_.shortcuts,
                       .nameForBundleID = system_.menu.nameForBundleID,
                       .iconForBundleID = system_.menu.iconForBundleID,
                       .now = system_.wallClock()});
    panelModel_->quickBlurOn.set(quickBlur_->isBlurred());
    panelModel_->focusBlurOn.set(focusBlur_->isOn());
    panelModel_->privateAppsOn.set(privateApps_->list().enabled);
    const auto* const ready = std::get_if<UpdateController::Ready>(&updates_->state());
    panelModel_->restartWaits.set(waitsForRestart());
    panelModel_->updateVersion.set(ready ? std::optional(ready->version) : std::nullopt);
}

void AppDelegate::openPanel() {
    system_.loop.post(lifetime_.guard([this] { statusItem_->performClick(); }));
}

}  // namespace OrvelApp
