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

/// The first-run guide: where the user is in it and what they have chosen so far.
struct OnboardingFlow {
    /// The lock that the user tries in the second step. Nobody walks away from it while it runs.
    enum class Trial { idle, locking, done };

    /// What is to be carried out at the end.
    struct Outcome {
        std::vector<std::string> privateApps;  ///< Bundle identifiers.
        bool launchAtLogin = false;
        bool operator==(const Outcome&) const = default;
    };

    OnboardingStep step = OnboardingStep::welcome;
    Trial trial = Trial::idle;
    std::set<std::string, std::less<>> chosenApps;  ///< Bundle identifiers.
    bool launchAtLogin = true;

    void next();
    void back();
    /// Whether a lock is to be tried now.
    bool startTry();
    void tryDidNotStart();
    void lockEnded();
    void toggle(std::string_view bundleID);
    void skipPrivateApps();
    /// Nothing before the last step. What is chosen but not in `order` is left out.
    std::optional<Outcome> outcome(const std::vector<std::string>& order) const;

    bool operator==(const OnboardingFlow&) const = default;
};

namespace OnboardingApps {

/// The apps to offer, by bundle identifier, likeliest first.
std::vector<std::string> detected(const std::function<bool(std::string_view)>& installed);

}  // namespace OnboardingApps

/// Whether the guide has been seen through, or closed.
namespace OnboardingRecord {

bool isDone(const SettingsStore& store);
void markDone(SettingsStore& store);

}  // namespace OnboardingRecord

}  // namespace OrvelCore
