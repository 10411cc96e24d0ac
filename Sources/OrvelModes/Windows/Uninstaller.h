#pragma once

#include <functional>

#include "OrvelCore/SettingsStore.h"
#include "OrvelSystem/Task.h"

namespace OrvelModes {

/// What the program takes with it when it goes. All but `moveAppToTrash` is best effort.
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
        /// All is gone but the program itself, which the user has to remove. It still runs.
        leftInApplications,
    };

    explicit Uninstaller(UninstallSystem system) : system_(std::move(system)) {}

    /// `appLocks` counts the apps that are locked.
    static bool permitted(bool macLocked, int appLocks) { return !macLocked && appLocks == 0; }
    /// Asks both before it begins, and again once the guard is unregistered: when a lock has begun
    /// meanwhile, everything else stays and the result is `refusedWhileLocked`. The caller then
    /// registers the guard again. The uninstaller must outlive the task.
    OrvelSystem::Task<Outcome> run(std::function<bool()> macLocked, std::function<int()> appLocks);

  private:
    UninstallSystem system_;
};

}  // namespace OrvelModes
