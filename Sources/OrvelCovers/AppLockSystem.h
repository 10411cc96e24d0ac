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
    /// Null when there is none.
    std::shared_ptr<const OrvelSystem::Picture> icon;
};

/// What the lock of single apps needs of its platform. Called on the main thread.
struct AppLockSystem {
    OrvelSystem::MainLoop& loop;
    OrvelAuth::PasswordVerifying& verifier;

    std::function<std::optional<OrvelCore::FrontApp>()> frontApp;
    /// Nothing when there is no such process.
    std::function<std::optional<AppIdentity>(std::int64_t pid)> appIdentity;
    std::function<void()> activateOrvel;
    std::function<bool()> orvelIsActive;
    std::function<void(std::int64_t pid)> activateApp;
    std::function<void(std::int64_t pid)> hideApp;
    /// False for a process that is gone.
    std::function<bool(std::int64_t pid)> appIsActive;
    /// Asks for the system's own lock.
    std::function<void()> engageMacOSLock;

    std::function<bool()> biometricsAvailable;
    /// A prompt that has not begun, for one `evaluateBiometrics`.
    std::function<std::shared_ptr<OrvelSystem::BiometricContext>()> makeBiometricContext;
    std::function<OrvelSystem::Task<OrvelAuth::BiometricResult>(
        std::shared_ptr<OrvelSystem::BiometricContext> context, std::string reason)>
        evaluateBiometrics;

    /// The account's limit of failed logins now; nothing for none.
    std::function<std::optional<int>()> accountLimit;
    std::function<std::optional<int>()> accountFailures;
    /// False keeps an app from being locked, as nothing would unlock it, and has said so.
    std::function<bool()> mayLock = [] { return true; };
    /// The whole-Mac lock is up.
    std::function<bool()> macIsLocked;
    std::function<OrvelCore::Date()> wallClock;
    std::int64_t ownPID = 0;

    /// The platform's own. What is this program's to say is left to the wiring: whether it or the
    /// lock is active, the hand-off and the account.
    static AppLockSystem live(OrvelSystem::MainLoop& loop, OrvelAuth::PasswordVerifying& verifier,
                              std::int64_t ownPID);
};

}  // namespace OrvelCovers
