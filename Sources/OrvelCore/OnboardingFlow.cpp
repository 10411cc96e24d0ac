#include "OrvelCore/OnboardingFlow.h"

#include "OrvelCore/PrivateAppList.h"

namespace OrvelCore {

namespace {

constexpr std::string_view doneKey = "onboardingCompleted";

OnboardingStep moved(OnboardingStep step, int by) {
    return static_cast<OnboardingStep>(static_cast<int>(step) + by);
}

}  // namespace

void OnboardingFlow::next() {
    if (trial == Trial::locking || step == OnboardingStep::finish) return;
    step = moved(step, 1);
}

void OnboardingFlow::back() {
    if (trial == Trial::locking || step == OnboardingStep::welcome) return;
    step = moved(step, -1);
}

bool OnboardingFlow::startTry() {
    if (step != OnboardingStep::shortcuts || trial != Trial::idle) return false;
    trial = Trial::locking;
    return true;
}

void OnboardingFlow::tryDidNotStart() {
    if (trial == Trial::locking) trial = Trial::idle;
}

void OnboardingFlow::lockEnded() {
    if (trial == Trial::locking) trial = Trial::done;
}

void OnboardingFlow::toggle(std::string_view bundleID) {
    const auto found = chosenApps.find(bundleID);
    if (found != chosenApps.end()) {
        chosenApps.erase(found);
    } else {
        chosenApps.emplace(bundleID);
    }
}

void OnboardingFlow::skipPrivateApps() {
    chosenApps.clear();
    step = OnboardingStep::finish;
}

std::optional<OnboardingFlow::Outcome> OnboardingFlow::outcome(
    const std::vector<std::string>& order) const {
    if (step != OnboardingStep::finish) return std::nullopt;
    Outcome outcome{.privateApps = {}, .launchAtLogin = launchAtLogin};
    for (const auto& bundleID : order) {
        if (chosenApps.contains(bundleID)) outcome.privateApps.push_back(bundleID);
    }
    return outcome;
}

std::vector<std::string> OnboardingApps::detected(
    const std::function<bool(std::string_view)>& installed) {
    std::vector<std::string> found;
    for (const auto bundleID : PrivateAppList::suggestions) {
        if (installed(bundleID)) found.emplace_back(bundleID);
    }
    return found;
}

bool OnboardingRecord::isDone(const SettingsStore& store) {
    return store.boolForKey(doneKey).value_or(false);
}

void OnboardingRecord::markDone(SettingsStore& store) {
    store.setBool(doneKey, true);
}

}  // namespace OrvelCore
