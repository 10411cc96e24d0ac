#include <algorithm>

#include <fmt/format.h>

#include "OrvelApp/AppDelegate.h"
#include "OrvelCore/Brand.h"
#include "OrvelCore/LaunchPolicy.h"
#include "OrvelCore/OnboardingFlow.h"

namespace OrvelApp {

using namespace OrvelCore;
using OrvelModes::Uninstaller;

namespace {

/// Seconds that a desktop needs to accept or reject a new status item.
constexpr double statusItemSettles = 1;

}  // namespace

void AppDelegate::showFirstScreen() {
    switch (LaunchPolicy::screen(prefs_.showsMenuBarIcon, system_.asLoginItem, resumesLock(),
                                 OnboardingRecord::isDone(system_.defaults), system_.environment)) {
        case LaunchScreen::settings:
            settings_.show();
            break;
        case LaunchScreen::onboarding:
            showOnboarding();
            break;
        case LaunchScreen::nothing:
            system_.loop
                .after(statusItemSettles, lifetime_.guard([this] {
                    if (LaunchPolicy::showsSettingsWhenEvicted(statusItem_->isShown(),
                                                               system_.asLoginItem,
                                                               macCovered_ || lockStarting_))
                        settings_.show();
                }))
                .detach();
            break;
    }
}

void AppDelegate::showOnboarding() {
    onboarding_ =
        std::make_unique<OrvelModes::OnboardingWindowController>(system_.windows.onboarding);
    auto& model = onboarding_->model;
    model.lockMac.set(prefs_.shortcuts.lockMac);
    model.lockApp.set(prefs_.shortcuts.lockApp);
    std::vector<OrvelUI::AppRow> rows;
    for (const auto& bundleID : OnboardingApps::detected([this](std::string_view id) {
             return system_.menu.nameForBundleID(std::string(id)).has_value();
         }))
        rows.push_back(appRow(bundleID));
    model.apps.set(std::move(rows));
    model.onTry = [this] { tryLock(); };
    model.onFinish = [this](const OnboardingFlow::Outcome& outcome) { finishOnboarding(outcome); };
    onboarding_->onClosedEarly = [this] {
        OnboardingRecord::markDone(system_.defaults);
        dropOnboarding();
    };
    onboarding_->show();
    system_.loop
        .after(statusItemSettles, lifetime_.guard([this] {
            if (onboarding_ && prefs_.showsMenuBarIcon)
                onboarding_->model.iconShown.set(statusItem_->isShown());
        }))
        .detach();
}

void AppDelegate::tryLock() {
    lockNow(false, lifetime_.guard([this](bool covered) {
        if (!covered && onboarding_) onboarding_->model.lockDidNotCover();
    }));
}

void AppDelegate::finishOnboarding(const OnboardingFlow::Outcome& outcome) {
    addPrivateApps(outcome.privateApps);
    if (outcome.launchAtLogin) setOpensAtLogin(true);
    OnboardingRecord::markDone(system_.defaults);
    const auto iconShown = onboarding_->model.iconShown.get();
    onboarding_->finish();
    dropOnboarding();
    // Opening the menu shows best where it is.
    if (prefs_.showsMenuBarIcon && iconShown != false) openPanel();
}

void AppDelegate::dropOnboarding() {
    // Deferred, because the guide itself may have called this.
    system_.loop.post([ended = std::shared_ptr<OrvelModes::OnboardingWindowController>(
                           std::move(onboarding_))] {});
}

void AppDelegate::confirmUninstall() {
    system_.windows.alert(OrvelUI::Alert::uninstallQuestion(),
                          lifetime_.guard([this](std::size_t button) {
                              if (button == 0) start(uninstall());
                          }));
}

OrvelSystem::Task<void> AppDelegate::uninstall() {
    if (std::exchange(uninstalling_, true)) co_return;
    Uninstaller uninstaller(system_.windows.uninstall);
    const auto outcome = co_await uninstaller.run([this] { return isMacLocked() || lockStarting_; },
                                                  [this] { return appLocks(); });
    uninstalling_ = false;
    switch (outcome) {
        case Uninstaller::Outcome::done:
            break;
        case Uninstaller::Outcome::refusedWhileLocked:
            // A lock that began while the guard was being unregistered needs the guard.
            registerGuard();
            toasts_.show("Unlock your apps first",
                         fmt::format("{} uninstalls when nothing is locked", Brand::name),
                         "hourglass");
            break;
        case Uninstaller::Outcome::leftInApplications:
            system_.windows.alert(OrvelUI::Alert::leftInApplications(),
                                  lifetime_.guard([this](std::size_t) { system_.menu.quit(); }));
            break;
    }
}

}  // namespace OrvelApp
