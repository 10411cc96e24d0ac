#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "OrvelAuth/BiometricResult.h"
#include "OrvelAuth/PasswordVerifying.h"
#include "OrvelCore/AppLockRules.h"
#include "OrvelCore/Date.h"
#include "OrvelSystem/BiometricContext.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Picture.h"
#include "OrvelSystem/Task.h"

namespace OrvelCovers {

struct AppIdentity {
    std::string name;
    /// Null without an icon.
    std::shared_ptr<const OrvelSystem::Picture> icon;
};

/// What the lock of single apps needs from its platform. Called on the main thread.
struct AppLockSystem {
    OrvelSystem::MainLoop& loop;
    OrvelAuth::PasswordVerifying& verifier;

    /// The app in front; `nullopt` when there is none.
    std::function<std::optional<OrvelCore::FrontApp>()> frontApp;
    /// `nullopt` when there is no such process.
    std::function<std::optional<AppIdentity>(std::int64_t pid)> appIdentity;
    std::function<void()> activateOrvel;
    std::function<bool()> orvelIsActive;
    std::function<void(std::int64_t pid)> activateApp;
    std::function<void(std::int64_t pid)> hideApp;
    /// False for a process that has ended.
    std::function<bool(std::int64_t pid)> appIsActive;
    /// Asks for the system's own lock.
    std::function<void()> engageMacOSLock;

    std::function<bool()> biometricsAvailable;
    /// Makes a prompt that has not begun, for one call of `evaluateBiometrics`.
    std::function<std::shared_ptr<OrvelSystem::BiometricContext>()> makeBiometricContext;
    std::function<OrvelSystem::Task<OrvelAuth::BiometricResult>(
        std::shared_ptr<OrvelSystem::BiometricContext> context, std::string reason)>
        evaluateBiometrics;

    /// The account's limit of failed logins at this moment; `nullopt` when there is none.
    std::function<std::optional<int>()> accountLimit;
    /// The account's own count of failed logins; `nullopt` when it cannot be read.
    std::function<std::optional<int>()> accountFailures;
    /// Returns false, after telling the user, when an app must not be locked because nothing could
    /// unlock it.
    std::function<bool()> mayLock = [] { return true; };
    /// Whether the screen lock is up.
    std::function<bool()> macIsLocked;
    std::function<OrvelCore::Date()> wallClock;
    std::int64_t ownPID = 0;

    /// Fills in what the platform provides. The caller must add the rest: whether this program or
    /// the screen lock is active, the hand-off and the account.
    static AppLockSystem live(OrvelSystem::MainLoop& loop, OrvelAuth::PasswordVerifying& verifier,
                              std::int64_t ownPID);
};

}  // namespace OrvelCovers
