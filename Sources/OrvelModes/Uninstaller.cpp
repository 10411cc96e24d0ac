#include "OrvelModes/Uninstaller.h"

namespace OrvelModes {

OrvelSystem::Task<Uninstaller::Outcome> Uninstaller::run(bool macLocked, int appLocks) {
    if (!permitted(macLocked, appLocks)) co_return Outcome::refusedWhileLocked;
    co_await system_.unregisterGuard();
    system_.unregisterLoginItem();
    system_.removeSettings();
    system_.removeSupportFolder();
    if (!system_.moveAppToTrash()) co_return Outcome::leftInApplications;
    system_.quit();
    co_return Outcome::done;
}

}  // namespace OrvelModes
