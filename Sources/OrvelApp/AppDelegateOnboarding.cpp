#include <utility>

#include "OrvelApp/AppDelegate.h"
#include "OrvelCore/LaunchPolicy.h"
#include "OrvelCore/OnboardingFlow.h"

namespace OrvelApp {

using namespace OrvelCore;

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
    model.capabilities = system_.capabilities;
    model.lockMac.set(prefs_.shortcuts.lockMac);
    model.lockApp.set(prefs_.shortcuts.lockApp);
    std::vector<OrvelUI::AppRow> rows;
    for (const auto& bundleID : OnboardingApps::detected([this](std::string_view id) {
             return system_.capabilities.appCovers &&
                    system_.menu.nameForBundleID(std::string(id)).has_value();
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

}  // namespace OrvelApp
