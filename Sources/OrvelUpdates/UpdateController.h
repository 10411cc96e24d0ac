#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <variant>

#include "OrvelCore/Date.h"
#include "OrvelCore/Lifetime.h"
#include "OrvelCore/SettingsStore.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Task.h"
#include "OrvelUpdates/UpdateSystem.h"

namespace OrvelUpdates {

namespace UpdateSchedule {
/// Seconds between automatic checks.
inline constexpr double interval = 86400;
}  // namespace UpdateSchedule

namespace UpdateInstall {
/// A package is opened only while nothing is locked: its installer is a window above all others'.
inline bool isAllowed(bool macLocked, int appLocks) {
    return !macLocked && appLocks == 0;
}
}  // namespace UpdateInstall

/// What the updater is doing, and when it does it. Main thread only.
class UpdateController {
  public:
    /// Only ever the first state.
    struct Idle {
        bool operator==(const Idle&) const = default;
    };
    struct Checking {
        /// There once a package is being downloaded.
        std::optional<DownloadProgress> download;
        bool operator==(const Checking&) const = default;
    };
    struct UpToDate {
        bool operator==(const UpToDate&) const = default;
    };
    /// Stays when the package was opened: the installer is what replaces the program.
    struct Ready {
        std::string version;
        std::filesystem::path package;
        bool operator==(const Ready&) const = default;
    };
    struct Failed {
        std::string text;
        bool operator==(const Failed&) const = default;
    };
    using State = std::variant<Idle, Checking, UpToDate, Ready, Failed>;

    /// `loop` and `defaults` outlive the controller.
    UpdateController(UpdateSystem system, OrvelCore::SettingsStore& defaults,
                     OrvelSystem::MainLoop& loop);

    const State& state() const { return state_; }
    /// Called after each change of the state.
    std::function<void(const State&)> onChange = [](const State&) {};

    /// Whether the daily check runs; true until the user says otherwise. `start` has to be called
    /// for a change to have its effect.
    bool automaticChecks() const;
    void setAutomaticChecks(bool automatic);

    /// Checks when a check is due, and otherwise sees to it that one will run. The very first call
    /// counts as a check, so a new install waits for a whole interval. For the launch, each wake,
    /// and each change of the setting.
    OrvelSystem::Task<void> start();
    /// Checks now, whatever the schedule says. Of two that overlap, the later result stands.
    OrvelSystem::Task<void> checkNow();
    /// Ends the checks that run, and the state becomes what it was before them.
    void cancel();
    /// Opens the package that is ready, if nothing is locked and it is still the one that was
    /// checked; whether it was opened. Without a reason to fail the state stays as it is.
    bool install(bool macLocked, int appLocks);

    /// The sentence for the user.
    static std::string statusText(const State& state);

  private:
    std::optional<OrvelCore::Date> checkedAt() const;
    void noteCheck();
    void arm(OrvelCore::Date from);
    void showProgress(const DownloadProgress& progress);
    void take(const UpdateResult& result);
    void set(State state);

    UpdateSystem system_;
    OrvelCore::SettingsStore& defaults_;
    OrvelSystem::MainLoop& loop_;
    State state_ = Idle{};
    // What a check that is cancelled goes back to; never `Checking`.
    State stateBeforeCheck_ = Idle{};
    // What the ready state stands for.
    std::optional<AppcastItem> readyItem_;
    // A wake-up is pending.
    bool armed_ = false;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelUpdates
