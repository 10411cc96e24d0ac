#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "OrvelCore/Capabilities.h"
#include "OrvelCore/Observed.h"
#include "OrvelCore/OnboardingFlow.h"
#include "OrvelCore/Shortcut.h"
#include "OrvelUI/AppRow.h"

namespace OrvelUI {

/// The first-run guide as its window shows it. Must outlive its views. Main thread only.
class OnboardingModel {
  public:
    template <class T>
    using Observed = OrvelCore::Observed<T>;

    OrvelCore::Capabilities capabilities;
    Observed<OrvelCore::OnboardingFlow> flow;
    /// The user's shortcuts for these actions; `nullopt` for none.
    Observed<std::optional<OrvelCore::Shortcut>> lockMac;
    Observed<std::optional<OrvelCore::Shortcut>> lockApp;
    /// The apps that are offered as private apps.
    Observed<std::vector<AppRow>> apps;
    /// Whether the status item can be seen; `nullopt` while that is not known.
    Observed<std::optional<bool>> iconShown;
    /// True for a still picture without animations.
    bool staticPreview = false;
    /// Called to start a real lock.
    std::function<void()> onTry = [] {};
    std::function<void(const OrvelCore::OnboardingFlow::Outcome&)> onFinish = [](const auto&) {};

    std::string primaryTitle() const;
    /// `nullopt` if the step has no secondary button.
    std::optional<std::string> secondaryTitle() const;
    bool primaryEnabled() const;
    bool keycapsPulse() const;
    bool showsHiddenIconNote() const { return iconShown.get() == false; }
    /// Whether the window, rather than the previous app, comes to the front after the current lock.
    bool keepsFocusAfterLock() const;

    /// Call when the real shortcut of the screen lock was pressed. Returns true if this counts as
    /// the try; otherwise the lock is an ordinary one.
    bool lockShortcutPressed();
    void lockDidNotCover();
    /// Call when a lock has ended. Returns true if it was the try and the window must come back.
    bool lockUncovered();

    void primary();
    void secondary();
    void back();
    void toggle(const std::string& bundleID);
    void setLaunchAtLogin(bool on);

    /// Calls `changed` after each change of any field, until the result is destroyed.
    [[nodiscard]] std::vector<OrvelCore::Subscription> observe(
        const std::function<void()>& changed);

  private:
    /// Changes a copy, so that the views are notified once. Returns what `change` returns.
    template <class F>
    auto changeFlow(F change);
};

}  // namespace OrvelUI
