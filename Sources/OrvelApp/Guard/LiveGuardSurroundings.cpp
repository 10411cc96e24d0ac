#include "OrvelApp/Guard/LiveGuardSurroundings.h"

#include <chrono>

#include "OrvelCore/AttemptLog.h"
#include "OrvelSystem/MacOSLock.h"

namespace OrvelApp {

using OrvelSystem::MacOSLock;

bool LiveGuardSurroundings::mark() {
    return markers_
        .write({.lockedAt = OrvelCore::Date(std::chrono::system_clock::now()),
                .bootSession = bootSession_,
                .failures = 0})
        .has_value();
}

void LiveGuardSurroundings::engageLock() {
    MacOSLock::engage();
}

void LiveGuardSurroundings::engageLockFallback() {
    // If the first way is not available, the first request already used this one.
    if (MacOSLock::isAvailable()) MacOSLock::engageFallback();
}

bool LiveGuardSurroundings::systemIsLocked() {
    return MacOSLock::isScreenLocked();
}

void LiveGuardSurroundings::recordFailedAttempt() {
    const auto file = OrvelCore::AttemptLog::standardFile();
    const auto date = OrvelCore::Date(std::chrono::system_clock::now());
    auto attempts = OrvelCore::AttemptLog::load(file);
    attempts.record(date);
    attempts.prune(date);
    (void)attempts.save(file);
}

}  // namespace OrvelApp
