#pragma once

#include "OrvelCore/LockMachine.h"
#include "OrvelCore/Match.h"

/// Formats phases and effects as short text for readable tables.
namespace LockMachineNotation {

inline constexpr std::array<std::string_view, 12> eventNames = {
    "lockRequested",       "passwordSubmitted", "passwordAccepted", "passwordRejected",
    "passwordUnavailable", "biometricAccepted", "clockTick",        "handOff",
    "macOSLocked",         "macOSUnlocked",     "macOSLockUnknown", "accountNearLimit"};

inline std::string_view text(LockEvent event) {
    return eventNames[static_cast<int>(event)];
}

inline std::string text(const LockPhase& phase) {
    using namespace LockPhases;
    return match(
        phase, [](const Idle&) { return std::string("idle"); },
        [](const Locked& p) { return fmt::format("locked({})", p.failures); },
        [](const Verifying& p) { return fmt::format("verifying({})", p.failures); },
        [](const CoolingDown& p) { return fmt::format("cooling({}, {})", p.failures, p.until); },
        [](const PasswordsPaused& p) { return fmt::format("paused({})", p.failures); },
        [](const HandedOff& p) {
            return fmt::format("handed({}, {}, {})", p.failures, p.since, p.confirmed);
        });
}

inline std::string text(const std::vector<LockEffect>& effects) {
    using namespace LockEffects;
    std::string result;
    for (const auto& effect : effects) {
        if (!result.empty()) result += ", ";
        result += match(
            effect, [](const ShowCooldown& e) { return fmt::format("showCooldown({})", e.until); },
            [](const Cover&) { return std::string("cover"); },
            [](const Uncover&) { return std::string("uncover"); },
            [](const VerifyPassword&) { return std::string("verify"); },
            [](const ShowWrongPassword&) { return std::string("showWrong"); },
            [](const ShowPasswordsPaused&) { return std::string("showPaused"); },
            [](const ShowReady&) { return std::string("showReady"); },
            [](const ShowUnavailable&) { return std::string("showUnavailable"); },
            [](const EngageMacOSLock&) { return std::string("engage"); });
    }
    return result;
}

}  // namespace LockMachineNotation
