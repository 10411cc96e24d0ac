#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "OrvelCore/AppUnlockMachine.h"
#include "OrvelCore/Date.h"
#include "OrvelCore/Lifetime.h"
#include "OrvelCore/Shortcut.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelCovers/AppLockSystem.h"
#include "OrvelCovers/BadgePresenting.h"
#include "OrvelCovers/CoverLoop.h"
#include "OrvelUI/LockCardModel.h"

namespace OrvelCovers {

/// The locked apps, from lock to unlock. A locked app keeps running behind its covers. Its badge
/// takes the unlock, and the keyboard is kept away from the app meanwhile. Locks end with the
/// program. Main thread only.
class AppLockController {
  public:
    AppLockController(CoverLoop& loop, BadgePresenting& badges, AppLockSystem system);
    ~AppLockController();
    AppLockController(const AppLockController&) = delete;
    AppLockController& operator=(const AppLockController&) = delete;

    std::set<std::int64_t> lockedPIDs() const;
    /// `nullopt` for an app that is not locked.
    std::optional<OrvelCore::Date> lockedSince(std::int64_t pid) const;
    /// Whether the user has asked to unlock the app.
    bool isUnlocking(std::int64_t pid) const;
    /// Null for an app that is not locked.
    std::shared_ptr<OrvelUI::LockCardModel> model(std::int64_t pid) const;
    /// The locked app whose badge has, or should have, the keyboard; `nullopt` when there is none.
    std::optional<std::int64_t> badgePID() const { return badgePID_; }

    void shortcutPressed();
    void lock(std::int64_t pid);
    void requestUnlock(std::int64_t pid);
    void cancelUnlock(std::int64_t pid);
    /// An app, possibly this one, came to the front.
    void appActivated(std::int64_t pid);
    /// A locked app that quits is forgotten.
    void appTerminated(std::int64_t pid);
    /// The screen lock is about to start: prompts close, app locks stay.
    void macLocked();
    /// Called with the windows of each sample, front-most first. Also drives the cool-downs.
    void windowsChanged(const std::vector<OrvelCore::WindowInfo>& windows);

    /// `nullopt` for no shortcut.
    void setUnlockShortcut(std::optional<OrvelCore::Shortcut> shortcut);
    std::function<void()> onLocksChanged = [] {};
    /// Called once for each new model.
    std::function<void(OrvelUI::LockCardModel&)> prepareModel = [](OrvelUI::LockCardModel&) {};

  private:
    using Machine = OrvelCore::AppUnlockMachine;

    struct LockedApp {
        std::shared_ptr<OrvelUI::LockCardModel> model;
        Machine machine;
        OrvelCore::Date since;
        bool unlocking = false;
        std::optional<OrvelSystem::Cancellation> biometricTask;
    };

    LockedApp* find(std::int64_t pid);
    const LockedApp* find(std::int64_t pid) const;
    void giveKeyboardToBadge(std::int64_t pid);
    void checkKeyboard(std::int64_t pid);
    void unlock(std::int64_t pid, bool reveal);
    OrvelSystem::Task<void> submit(OrvelSystem::Password password, std::int64_t pid);
    std::vector<Machine::Effect> handle(Machine::Event event, std::int64_t pid);
    void perform(const Machine::Effect& effect, std::int64_t pid);
    void startBiometrics(std::int64_t pid);
    void stopBiometrics(std::int64_t pid);
    OrvelSystem::Task<void> promptBiometrics(std::int64_t pid,
                                             OrvelSystem::Cancellation cancellation,
                                             std::weak_ptr<void> alive);
    void placeBadge(std::int64_t pid, const std::vector<OrvelCore::WindowInfo>& windows);

    CoverLoop& loop_;
    BadgePresenting& badges_;
    AppLockSystem system_;
    std::map<std::int64_t, LockedApp> apps_;
    std::optional<std::int64_t> badgePID_;
    std::optional<OrvelCore::Shortcut> unlockShortcut_ = OrvelCore::Shortcut::lockApp();
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelCovers
