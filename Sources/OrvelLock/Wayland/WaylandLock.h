#pragma once

#include <memory>

#include "OrvelLock/KioskController.h"
#include "OrvelLock/LockPresenterSystem.h"
#include "OrvelLock/Wayland/SessionLock.h"
#include "OrvelSystem/Wayland/Outputs.h"

namespace OrvelLock {

/// The desktop is taken by the session's lock and given back by its unlock. What both refer to
/// outlives them.
KioskSystem waylandKiosk(OrvelSystem::MainLoop& loop, SessionLock& lock);
/// The covers show while the lock is held or asked for. Covers for which none was asked are a
/// preview.
LockPresenterSystem waylandLockPresenter(OrvelSystem::MainLoop& loop, SessionLock& lock,
                                         OrvelSystem::Outputs& outputs);

}  // namespace OrvelLock
