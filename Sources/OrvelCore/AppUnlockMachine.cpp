#include "OrvelCore/AppUnlockMachine.h"

namespace OrvelCore {

using namespace AppUnlockPhases;
using namespace AppUnlockEffects;

std::vector<AppUnlockMachine::Effect> AppUnlockMachine::handle(Event event, double now) {
    const bool isReady = std::holds_alternative<Ready>(phase);
    const bool isVerifying = std::holds_alternative<Verifying>(phase);
    switch (event) {
        case Event::passwordSubmitted:
            if (!isReady) return {};
            phase = Verifying{};
            return {ShowVerifying{}, VerifyPassword{}};
        case Event::passwordAccepted:
            if (!isVerifying) return {};
            phase = Ready{};
            return {Unlock{}};
        case Event::passwordRejected:
            if (!isVerifying) return {};
            return reject(now);
        case Event::passwordUnavailable:
            if (!isVerifying) return {};
            phase = Ready{};
            return {ShowUnavailable{}};
        case Event::biometricAccepted:
            phase = Ready{};
            return {Unlock{}};
        case Event::clockTick: {
            const auto* cooldown = std::get_if<Cooldown>(&phase);
            if (!cooldown || now < cooldown->until) return {};
            phase = Ready{};
            return {ShowReady{}};
        }
        case Event::accountNearLimit:
            if (!isReady && !isVerifying) return {};
            phase = PasswordsPaused{};
            return {ShowPasswordsPaused{}};
    }
    return {};
}

std::vector<AppUnlockMachine::Effect> AppUnlockMachine::reject(double now) {
    ++failures;
    // The account's limit overrides any cool-down, so check it first.
    if (!backoff.passwordsAllowed(failures)) {
        phase = PasswordsPaused{};
        return {ShowWrongPassword{}, ShowPasswordsPaused{}};
    }
    const double cooldown = backoff.cooldown(failures);
    if (cooldown > 0) {
        phase = Cooldown{now + cooldown};
        return {ShowWrongPassword{}, ShowCooldown{now + cooldown}};
    }
    phase = Ready{};
    return {ShowWrongPassword{}};
}

}  // namespace OrvelCore
