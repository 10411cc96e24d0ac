#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "OrvelCore/Observed.h"
#include "OrvelCore/OnboardingFlow.h"
#include "OrvelCore/Shortcut.h"
#include "OrvelUI/AppRow.h"

namespace OrvelUI {

/// The first-run guide as its window shows it. Outlives every view of it. Main thread only.
class OnboardingModel {
  public:
    template <class T>
    using Observed = OrvelCore::Observed<T>;

    Observed<OrvelCore::OnboardingFlow> flow;
    Observed<std::optional<OrvelCore::Shortcut>> lockMac;
    Observed<std::optional<OrvelCore::Shortcut>> lockApp;
    /// Offered as private apps.
    Observed<std::vector<AppRow>> apps;
    /// Whether the status item was seen; nothing while that cannot be told.
    Observed<std::optional<bool>> iconShown;
    /// For a still picture, in which nothing moves.
    bool staticPreview = false;
    /// Asks for a real lock.
    std::function<void()> onTry = [] {};
    std::function<void(const OrvelCore::OnboardingFlow::Outcome&)> onFinish = [](const auto&) {};

    std::string primaryTitle() const;
    std::optional<std::string> secondaryTitle() const;
    bool primaryEnabled() const;
    bool keycapsPulse() const;
    bool showsHiddenIconNote() const { return iconShown.get() == false; }
    /// Whether the window comes back after the lock that runs, in place of the app before it.
    bool keepsFocusAfterLock() const;

    /// The real shortcut for the whole-Mac lock was pressed. True when it counts as the try; else
    /// the lock is an ordinary one.
    bool lockShortcutPressed();
    void lockDidNotCover();
    /// A lock is over. True when it was the try, and the window is to come back.
    bool lockUncovered();

    void primary();
    void secondary();
    void back();
    void toggle(const std::string& bundleID);
    void setLaunchAtLogin(bool on);

    /// Calls `changed` after each change of any field.
    [[nodiscard]] std::vector<OrvelCore::Observation> observe(const std::function<void()>& changed);

  private:
    /// Works on a copy, so that the views hear of the result once. Gives what `change` gives.
    template <class F>
    auto changeFlow(F change);
};

}  // namespace OrvelUI
