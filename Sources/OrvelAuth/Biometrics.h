#pragma once

#include <functional>
#include <memory>
#include <string>

#include "OrvelAuth/BiometricResult.h"
#include "OrvelSystem/BiometricContext.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Task.h"

namespace OrvelAuth {

/// The fingerprint sensor. Main thread only, which none of this ever blocks.
struct Biometrics {
    /// Whether a sensor with a finger of the user's is there, as far as is known, and has not
    /// locked itself. What is known is looked up again in the background, after a call of this and
    /// after a finger was enrolled, so the first call of all, at launch, starts with false.
    static bool isAvailable();
    /// A prompt that has not begun, for one `evaluate`.
    static std::shared_ptr<OrvelSystem::BiometricContext> makeContext(OrvelSystem::MainLoop& loop);
    /// Prompts until the sensor gives a verdict or the context is invalidated. `reason` completes
    /// the system's own sentence, where it shows one.
    static OrvelSystem::Task<BiometricResult> evaluate(
        std::shared_ptr<OrvelSystem::BiometricContext> context, std::string reason);

    /// The owner gave the right password, which ends the lock-out of the sensor.
    static void passwordAccepted();
    /// Calls `lockedOut` whenever the sensor locks itself, from now on, in the place of any other.
    static void observeLockout(std::function<void()> lockedOut);
};

}  // namespace OrvelAuth
