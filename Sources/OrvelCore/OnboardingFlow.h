#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "OrvelCore/SettingsStore.h"

namespace OrvelCore {

enum class OnboardingStep { welcome, shortcuts, privateApps, finish };
inline constexpr int onboardingStepCount = 4;

/// The state of the onboarding: the current step and the user's choices so far.
struct OnboardingFlow {
    /// The state of the trial lock in the second step. While it is `locking`, the user cannot
    /// change the step.
    enum class Trial { idle, locking, done };

    /// The choices to apply at the end.
    struct Outcome {
        std::vector<std::string> privateApps;  // bundle identifiers
        bool launchAtLogin = false;
        bool operator==(const Outcome&) const = default;
    };

    OnboardingStep step = OnboardingStep::welcome;
    Trial trial = Trial::idle;
    std::set<std::string, std::less<>> chosenApps;  // bundle identifiers
    bool launchAtLogin = true;

    void next();
    void back();
    /// Returns whether to start the trial lock now.
    bool startTry();
    void tryDidNotStart();
    void lockEnded();
    void toggle(std::string_view bundleID);
    void skipPrivateApps();
    /// `nullopt` before the last step. Chosen apps that are not in `order` are omitted.
    std::optional<Outcome> outcome(const std::vector<std::string>& order) const;

    bool operator==(const OnboardingFlow&) const = default;
};

namespace OnboardingApps {

/// The bundle identifiers of the installed apps to suggest, in order of likelihood.
std::vector<std::string> detected(const std::function<bool(std::string_view)>& installed);

}  // namespace OnboardingApps

/// Whether the user has completed or closed the onboarding.
namespace OnboardingRecord {

bool isDone(const SettingsStore& store);
void markDone(SettingsStore& store);

}  // namespace OnboardingRecord

}  // namespace OrvelCore
