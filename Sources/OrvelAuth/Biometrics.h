#pragma once

#include <functional>
#include <memory>
#include <string>

#include "OrvelAuth/BiometricResult.h"
#include "OrvelSystem/BiometricContext.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Task.h"

namespace OrvelAuth {

/// The fingerprint sensor. Main thread only; no function blocks.
struct Biometrics {
    /// Whether a sensor is known to exist for which the user has enrolled a finger, and which has
    /// not locked itself. On Linux this is the latest known state: calls of this function and
    /// enrolments update it in the background, so the first call, at launch, returns false.
    static bool isAvailable();
    /// Creates a prompt that has not started. Use it for one call of `evaluate`.
    static std::shared_ptr<OrvelSystem::BiometricContext> makeContext(OrvelSystem::MainLoop& loop);
    /// Prompts until the sensor returns a result or the context is invalidated. `reason` completes
    /// the system's own sentence, if the system shows one.
    static OrvelSystem::Task<BiometricResult> evaluate(
        std::shared_ptr<OrvelSystem::BiometricContext> context, std::string reason);

    /// Ends the sensor's lock-out after the owner has given the right password.
    static void passwordAccepted();
    /// Sets the function to call whenever the sensor locks itself; it replaces the previous one. On
    /// macOS it is never called, since a prompt's result reports the lock-out.
    static void observeLockout(std::function<void()> lockedOut);
};

}  // namespace OrvelAuth
