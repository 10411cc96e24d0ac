#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "OrvelApp/AppDelegate.h"
#include "OrvelCore/Brand.h"

namespace OrvelApp {

using OrvelModes::Uninstaller;
using OrvelSystem::ProgramFile;
using OrvelUpdates::UpdateController;

void AppDelegate::installUpdates() {
    updates_ = std::make_unique<UpdateController>(system_.updates, system_.defaults, system_.loop);
    updates_->onChange =
        lifetime_.guard([this](const UpdateController::State&) { showUpdateState(); });
    woke();
}

void AppDelegate::woke() {
    if (updates_) start(updates_->start());
}

void AppDelegate::showUpdateState() {
    const auto& state = updates_->state();
    auto& about = settings_.model.about;
    about.updateStatus.set(UpdateController::statusText(state));
    about.checking.set(std::holds_alternative<UpdateController::Checking>(state));
    about.updateReady.set(std::holds_alternative<UpdateController::Ready>(state));
    if (statusMenu_) fillPanel();
}

void AppDelegate::installUpdate() {
    if (!std::holds_alternative<UpdateController::Ready>(updates_->state())) return;
    if (!updates_->install(isMacLocked(), appLocks()))
        toasts_.show("Unlock your apps first", "The update installs when nothing is locked",
                     "hourglass");
}

void AppDelegate::programFileChanged() {
    // Any program can send the signal, but only a changed file changes this state.
    programFileChanged_ = system_.programFile() != ProgramFile::State::current;
    followProgramFile();
}

/// When the program ends, its covers go with it. So it waits until nothing that hides the screen or
/// an app is active. Focus Blur is restored by the restart.
void AppDelegate::followProgramFile() {
    if (!programFileChanged_) return;
    if (hidesSomething()) {
        fillPanel();
        return;
    }
    switch (system_.programFile()) {
        case ProgramFile::State::current:
            break;
        case ProgramFile::State::replaced: {
            std::vector<std::string> urls;
            if (focusBlur_->isOn())
                urls.push_back(std::string(OrvelCore::Brand::urlScheme) + "://focus/on");
            system_.restart(std::move(urls));
            break;
        }
        case ProgramFile::State::gone:
            start(leave());
            break;
    }
}

OrvelSystem::Task<void> AppDelegate::leave() {
    programFileChanged_ = false;
    const auto alive = lifetime_.weak();
    co_await system_.windows.uninstall.unregisterGuard();
    if (alive.expired()) co_return;
    // A lock may have begun meanwhile; then its end must be awaited first.
    programFileChanged_ = hidesSomething();
    if (!programFileChanged_) system_.menu.quit();
}

bool AppDelegate::hidesSomething() const {
    return isMacLocked() || lockStarting_ || appLocks() > 0 || quickBlur_->isBlurred();
}

bool AppDelegate::waitsForRestart() const {
    return programFileChanged_ && system_.programFile() == ProgramFile::State::replaced;
}

void AppDelegate::becameFree() {
    // Deferred, so that every part of the program has finished what just ended.
    system_.loop.post(lifetime_.guard([this] {
        if (guardRenewalWaits_ && !isMacLocked() && !lockStarting_) registerGuard();
        followProgramFile();
    }));
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
            toasts_.show(
                "Unlock your apps first",
                fmt::format("{} uninstalls when nothing is locked", OrvelCore::Brand::name),
                "hourglass");
            break;
        case Uninstaller::Outcome::leftInApplications:
            system_.windows.alert(OrvelUI::Alert::leftInApplications(),
                                  lifetime_.guard([this](std::size_t) { system_.menu.quit(); }));
            break;
    }
}

}  // namespace OrvelApp
