#include "OrvelUI/LockFeedback.h"

#include <algorithm>
#include <cmath>

#include "OrvelCore/Brand.h"
#include "OrvelCore/Match.h"

namespace OrvelUI {

namespace {

using OrvelCore::Haptic;
using OrvelCore::LockSound;
using Effects = std::vector<LockFeedback::Effect>;

std::string counted(long long count, const std::string& unit) {
    return std::to_string(count) + " " + unit + (count == 1 ? "" : "s");
}

Effects statusEffects(const LockCardModel::Status& status, bool sounds, OrvelCore::Date now) {
    return OrvelCore::match(
        status,
        [&](const LockCardModel::Cooldown& cooldown) -> Effects {
            const double wait = OrvelCore::secondsBetween(now, cooldown.until);
            return {LockFeedback::Announce{"Too many attempts. Try again in " +
                                           LockFeedback::spokenWait(wait) + "."}};
        },
        [](const LockCardModel::Ready&) -> Effects { return {}; },
        [](const LockCardModel::Verifying&) -> Effects { return {}; },
        [&](const LockCardModel::WrongPassword&) {
            Effects effects;
            if (sounds) effects.emplace_back(LockSound::failure);
            effects.emplace_back(LockFeedback::Announce{"Incorrect password."});
            effects.emplace_back(Haptic::failure);
            return effects;
        },
        [](const LockCardModel::PasswordsPaused&) -> Effects {
            return {LockFeedback::Announce{"Passwords are paused. Use Touch ID."}};
        },
        [](const LockCardModel::Unavailable&) -> Effects {
            return {LockFeedback::Announce{"Couldn't check your password. Try again."}};
        });
}

}  // namespace

Effects LockFeedback::effects(const Event& event, bool soundsOn, bool interfaceSoundsOn,
                              OrvelCore::Date now) {
    const bool sounds = soundsOn && interfaceSoundsOn;
    return OrvelCore::match(
        event,
        [&](const Locked& locked) {
            Effects effects{Announce{lockedAnnouncement(locked.touchIDAvailable)}};
            if (sounds) effects.emplace_back(LockSound::lock);
            return effects;
        },
        [&](const StatusChanged& change) { return statusEffects(change.status, sounds, now); },
        [&](const Unlocked&) { return sounds ? Effects{LockSound::unlock} : Effects{}; },
        [](const TouchIDAccepted&) { return Effects{Haptic::success}; });
}

std::string LockFeedback::lockedAnnouncement(bool touchIDAvailable) {
    return "Screen locked by " + std::string(OrvelCore::Brand::name) +
           (touchIDAvailable ? ". Use Touch ID, or type your Mac password."
                             : ". Type your Mac password.");
}

std::string LockFeedback::spokenWait(double seconds) {
    const auto total = std::max(1LL, static_cast<long long>(std::ceil(seconds)));
    const auto rest = total % 60;
    if (total < 60) return counted(rest, "second");
    const auto minutes = counted(total / 60, "minute");
    return rest == 0 ? minutes : minutes + " and " + counted(rest, "second");
}

}  // namespace OrvelUI
