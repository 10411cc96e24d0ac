#include "OrvelModes/Windows/Uninstaller.h"

namespace OrvelModes {

OrvelSystem::Task<Uninstaller::Outcome> Uninstaller::run(std::function<bool()> macLocked,
                                                         std::function<int()> appLocks) {
    if (!permitted(macLocked(), appLocks())) co_return Outcome::refusedWhileLocked;
    co_await system_.unregisterGuard();
    if (!permitted(macLocked(), appLocks())) co_return Outcome::refusedWhileLocked;
    system_.unregisterLoginItem();
    system_.removeSettings();
    system_.removeSupportFolder();
    if (!system_.moveAppToTrash()) co_return Outcome::leftInApplications;
    system_.quit();
    co_return Outcome::done;
}

}  // namespace OrvelModes
