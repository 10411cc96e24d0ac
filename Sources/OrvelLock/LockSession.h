#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "OrvelAuth/PasswordVerifying.h"
#include "OrvelCore/Date.h"
#include "OrvelCore/LockMachine.h"
#include "OrvelCore/LockMarker.h"
#include "OrvelLock/HandoffPerforming.h"
#include "OrvelLock/KioskControlling.h"
#include "OrvelLock/LockPresenting.h"
#include "OrvelSystem/Password.h"
#include "OrvelSystem/Task.h"

namespace OrvelLock {

/// All that the session knows of the world. Everything referred to outlives the session.
struct LockCollaborators {
    LockPresenting& presenter;
    KioskControlling& kiosk;
    OrvelCore::MarkerStoring& markers;
    HandoffPerforming& handoff;
    OrvelAuth::PasswordVerifying& verifier;
    /// Identity of this boot, fixed for the life of the process.
    std::string bootSession;
    /// Seconds of the monotonic clock.
    std::function<double()> clock;
    std::function<OrvelCore::Date()> wallClock;
    /// Whether a crash guard is really there at this moment.
    std::function<bool()> guardAvailable;
    std::function<bool()> biometricsAvailable;
    /// The account's own count of failed logins; nothing when it cannot be read.
    std::function<std::optional<int>()> accountFailures;
    /// Whether the system's own lock is up.
    std::function<bool()> screenIsLocked;
    /// Whether the system's own lock can be had, and only in this one's place: it cannot come up
    /// over this one.
    std::function<bool()> replacesLock = [] { return false; };
};

/// Runs the whole-Mac lock: turns what happens into events of a `LockMachine` and performs the
/// effects. It never leaves somebody before a screen that nothing will open: whatever it cannot
/// vouch for goes to the system's own lock.
///
/// Main thread only. Asynchronous operations interleave where they wait, so whoever resumes looks
/// at the phase again. The tasks refer to the session, which lives as long as the loop runs them.
class LockSession {
  public:
    /// `handOffAfter` in seconds; nothing never hands off by time.
    LockSession(LockCollaborators around, OrvelCore::Backoff backoff,
                std::optional<double> handOffAfter);
    LockSession(const LockSession&) = delete;
    LockSession& operator=(const LockSession&) = delete;

    const OrvelCore::LockMachine& machine() const { return machine_; }
    bool isLocked() const { return machine_.isLocked(); }
    std::optional<double> handOffAfter() const { return machine_.handOffAfter; }
    void setHandOffAfter(std::optional<double> seconds) { machine_.handOffAfter = seconds; }
    /// The account's limit of failed logins; nothing never pauses passwords.
    void setAccountLimit(std::optional<int> limit) { machine_.backoff.accountLimit = limit; }
    bool unlocksWithMacOS() const { return machine_.unlocksWithMacOS; }
    void setUnlocksWithMacOS(bool unlocks) { machine_.unlocksWithMacOS = unlocks; }
    /// Whether `resumeIfMarked` would lock: asked at launch, before any window may open.
    bool willResume() const;

    /// A lock that would be handed off at once, and that the system's own can replace, does not
    /// begin.
    OrvelSystem::Task<void> lock();
    OrvelSystem::Task<void> biometricAccepted();
    OrvelSystem::Task<void> macOSLocked();
    OrvelSystem::Task<void> macOSUnlocked();
    /// The macOS lock has ended without a proof of an unlock, or can no longer be followed: the
    /// card takes passwords again.
    OrvelSystem::Task<void> macOSLockUnknown();
    /// The kiosk's `onDisturbed`.
    OrvelSystem::Task<void> desktopDisturbed();
    OrvelSystem::Task<void> tick();
    OrvelSystem::Task<void> submitPassword(OrvelSystem::Password password);
    /// The card lost the keyboard and steps were taken to get it back.
    OrvelSystem::Task<void> focusLost();
    /// The keyboard did not come back.
    OrvelSystem::Task<void> reclaimFailed();
    /// Locks anew when a lock was running in this boot as the process before this one died.
    OrvelSystem::Task<void> resumeIfMarked();
    void screensChanged();

    /// True keeps the app that was in front before the lock from coming back after it.
    std::function<bool()> keepsFocusOnUnlock = [] { return false; };
    /// The lock is down and everything has been given back.
    std::function<void()> onUncovered = [] {};
    /// Once for every rejected password, also when the answer came too late to count.
    std::function<void(OrvelCore::Date)> onFailedAttempt = [](OrvelCore::Date) {};

  private:
    OrvelSystem::Task<void> send(OrvelCore::LockEvent event);
    OrvelSystem::Task<void> perform(OrvelCore::LockEffect effect);
    OrvelSystem::Task<void> cover();
    void uncover();
    void engageMacOSLock();
    OrvelSystem::Task<void> holdDesktop();
    OrvelSystem::Task<void> watchSystemLock();
    bool accountIsNearLimit() const;
    /// Whether the crash record could be written.
    bool mark();

    LockCollaborators around_;
    OrvelCore::LockMachine machine_;
    /// Times of the losses within the window that counts, oldest first.
    std::vector<double> focusLosses_;
    /// When the desktop was first found in other hands; nothing while it is ours.
    std::optional<double> desktopLostAt_;
    /// When, during a hand-off, the desktop was first found without the system's lock; nothing
    /// while that lock holds it.
    std::optional<double> systemLockMissingSince_;
    bool systemLockWasUp_ = false;
    /// The crash record of a lock that is about to begin is written.
    bool isMarked_ = false;
};

}  // namespace OrvelLock
