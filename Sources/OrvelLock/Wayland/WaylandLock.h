#pragma once

#include <memory>

#include "OrvelLock/KioskController.h"
#include "OrvelLock/LockPresenterSystem.h"
#include "OrvelLock/Wayland/SessionLock.h"
#include "OrvelSystem/Wayland/Outputs.h"

namespace OrvelLock {

/// Locks and unlocks the session with the compositor's lock. The arguments of both functions must
/// outlive the results.
KioskSystem waylandKiosk(OrvelSystem::MainLoop& loop, SessionLock& lock);
/// The covers are surfaces of the lock. If they are shown without a requested lock, they are a
/// preview.
LockPresenterSystem waylandLockPresenter(OrvelSystem::MainLoop& loop, SessionLock& lock,
                                         OrvelSystem::Outputs& outputs);

}  // namespace OrvelLock
