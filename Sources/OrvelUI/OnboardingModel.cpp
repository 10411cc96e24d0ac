#include "OrvelUI/OnboardingModel.h"

#include <type_traits>

namespace OrvelUI {

using OrvelCore::OnboardingFlow;
using OrvelCore::OnboardingStep;
using Trial = OnboardingFlow::Trial;

template <class F>
auto OnboardingModel::changeFlow(F change) {
    auto changed = flow.get();
    if constexpr (std::is_void_v<decltype(change(changed))>) {
        change(changed);
        flow.set(std::move(changed));
    } else {
        const auto result = change(changed);
        flow.set(std::move(changed));
        return result;
    }
}

std::string OnboardingModel::primaryTitle() const {
    const auto& now = flow.get();
    switch (now.step) {
        case OnboardingStep::welcome:
            return "Get started";
        case OnboardingStep::shortcuts:
            return now.trial == Trial::done ? "Continue" : "Try it now";
        case OnboardingStep::privateApps:
            return now.chosenApps.empty() ? "Continue" : "Set up";
        case OnboardingStep::finish:
            break;
    }
    return "Done";
}

std::optional<std::string> OnboardingModel::secondaryTitle() const {
    const auto& now = flow.get();
    if (now.step == OnboardingStep::shortcuts && now.trial != Trial::done) return "Skip";
    if (now.step == OnboardingStep::privateApps && !apps.get().empty()) return "Skip for now";
    return std::nullopt;
}

bool OnboardingModel::primaryEnabled() const {
    return flow.get().trial != Trial::locking;
}

bool OnboardingModel::keycapsPulse() const {
    const auto& now = flow.get();
    return now.step == OnboardingStep::shortcuts && now.trial == Trial::idle && !staticPreview;
}

bool OnboardingModel::keepsFocusAfterLock() const {
    return flow.get().trial == Trial::locking;
}

bool OnboardingModel::lockShortcutPressed() {
    return changeFlow([](OnboardingFlow& now) { return now.startTry(); });
}

void OnboardingModel::lockDidNotCover() {
    changeFlow([](OnboardingFlow& now) { now.tryDidNotStart(); });
}

bool OnboardingModel::lockUncovered() {
    if (flow.get().trial != Trial::locking) return false;
    changeFlow([](OnboardingFlow& now) { now.lockEnded(); });
    return true;
}

void OnboardingModel::primary() {
    const auto& now = flow.get();
    if (now.step == OnboardingStep::finish) {
        std::vector<std::string> order;
        for (const auto& app : apps.get()) order.push_back(app.id);
        if (const auto outcome = now.outcome(order)) onFinish(*outcome);
    } else if (now.step == OnboardingStep::shortcuts && now.trial != Trial::done) {
        if (lockShortcutPressed()) onTry();
    } else {
        changeFlow([](OnboardingFlow& changed) { changed.next(); });
    }
}

void OnboardingModel::secondary() {
    if (flow.get().step == OnboardingStep::shortcuts)
        changeFlow([](OnboardingFlow& now) { now.next(); });
    else if (flow.get().step == OnboardingStep::privateApps)
        changeFlow([](OnboardingFlow& now) { now.skipPrivateApps(); });
}

void OnboardingModel::back() {
    changeFlow([](OnboardingFlow& now) { now.back(); });
}

void OnboardingModel::toggle(const std::string& bundleID) {
    changeFlow([&](OnboardingFlow& now) { now.toggle(bundleID); });
}

void OnboardingModel::setLaunchAtLogin(bool on) {
    changeFlow([on](OnboardingFlow& now) { now.launchAtLogin = on; });
}

std::vector<OrvelCore::Subscription> OnboardingModel::observe(
    const std::function<void()>& changed) {
    std::vector<OrvelCore::Subscription> observations;
    const auto observe = [&](auto&... fields) {
        (observations.push_back(fields.observe([changed](const auto&) { changed(); })), ...);
    };
    observe(flow, lockMac, lockApp, apps, iconShown);
    return observations;
}

}  // namespace OrvelUI
