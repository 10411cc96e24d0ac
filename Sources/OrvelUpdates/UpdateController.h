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
/// A package is opened only while nothing is locked, since its installer's window appears above all
/// others.
inline bool isAllowed(bool macLocked, int appLocks) {
    return !macLocked && appLocks == 0;
}
}  // namespace UpdateInstall

/// Controls when checks run, and holds the updater's state. Main thread only.
class UpdateController {
  public:
    /// The initial state.
    struct Idle {
        bool operator==(const Idle&) const = default;
    };
    struct Checking {
        /// Set while a package is being downloaded.
        std::optional<DownloadProgress> download;
        bool operator==(const Checking&) const = default;
    };
    struct UpToDate {
        bool operator==(const UpToDate&) const = default;
    };
    /// Remains after the package has been opened, since the installer replaces the program.
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

    /// `loop` and `defaults` must outlive the controller.
    UpdateController(UpdateSystem system, OrvelCore::SettingsStore& defaults,
                     OrvelSystem::MainLoop& loop);

    const State& state() const { return state_; }
    /// Called after each change of the state.
    std::function<void(const State&)> onChange = [](const State&) {};

    /// Whether the daily check is enabled; true by default. Call `start` after changing it.
    bool automaticChecks() const;
    void setAutomaticChecks(bool automatic);

    /// Checks if a check is due, otherwise schedules one. The very first call counts as a check, so
    /// a new installation waits for one interval. Call it at launch, after each wake-up of the
    /// machine and after each change of `automaticChecks`.
    OrvelSystem::Task<void> start();
    /// Checks immediately, independent of the schedule. If two checks overlap, the later result
    /// applies.
    OrvelSystem::Task<void> checkNow();
    /// Ends the running checks and restores the state from before them.
    void cancel();
    /// Opens the package that is ready if nothing is locked and the package is unchanged since its
    /// verification. Returns whether it was opened. A package that was changed or could not be
    /// opened makes the state `Failed`; otherwise the state does not change.
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
    // The state to restore after a cancelled check; never `Checking`.
    State stateBeforeCheck_ = Idle{};
    // The item of the `Ready` state.
    std::optional<AppcastItem> readyItem_;
    // Whether a scheduled call is pending.
    bool armed_ = false;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelUpdates
