#pragma once

#include <functional>

#include "OrvelCore/SettingsStore.h"
#include "OrvelSystem/Task.h"

namespace OrvelModes {

/// What the program removes when it is uninstalled. All except `moveAppToTrash` is best effort.
struct UninstallSystem {
    /// Waits for other programs.
    std::function<OrvelSystem::Task<void>()> unregisterGuard;
    std::function<void()> unregisterLoginItem;
    std::function<void()> removeSettings;
    std::function<void()> removeSupportFolder;
    std::function<bool()> moveAppToTrash;
    std::function<void()> quit;

    static UninstallSystem live(OrvelSystem::MainLoop& loop, OrvelCore::SettingsStore& defaults,
                                std::function<void()> quit);
};

/// Removes the program from this computer. Main thread only.
class Uninstaller {
  public:
    enum class Outcome {
        done,
        refusedWhileLocked,
        /// Everything was removed except the program itself, which the user must remove. It still
        /// runs.
        leftInApplications,
    };

    explicit Uninstaller(UninstallSystem system) : system_(std::move(system)) {}

    /// `appLocks` is the number of locked apps.
    static bool permitted(bool macLocked, int appLocks) { return !macLocked && appLocks == 0; }
    /// Calls both functions before it begins, and again after the guard has been unregistered. If a
    /// lock has begun meanwhile, everything else is kept and the result is `refusedWhileLocked`;
    /// the caller must then register the guard again. The uninstaller must outlive the task.
    OrvelSystem::Task<Outcome> run(std::function<bool()> macLocked, std::function<int()> appLocks);

  private:
    UninstallSystem system_;
};

}  // namespace OrvelModes
