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

/// What the session depends on. Everything referred to must outlive the session.
struct LockCollaborators {
    LockPresenting& presenter;
    KioskControlling& kiosk;
    OrvelCore::MarkerStoring& markers;
    HandoffPerforming& handoff;
    OrvelAuth::PasswordVerifying& verifier;
    /// The identity of this boot, constant for the life of the process.
    std::string bootSession;
    /// The monotonic clock, in seconds.
    std::function<double()> clock;
    std::function<OrvelCore::Date()> wallClock;
    /// Whether a crash guard is running at this moment.
    std::function<bool()> guardAvailable;
    std::function<bool()> biometricsAvailable;
    /// The account's own count of failed logins; `nullopt` when it cannot be read.
    std::function<std::optional<int>()> accountFailures;
    /// Whether the system's own lock is up.
    std::function<bool()> screenIsLocked;
    /// Whether the system's own lock can be had, and only in this one's place: it cannot come up
    /// over this one.
    std::function<bool()> replacesLock = [] { return false; };
    /// Whether the guard would ask for the system's own lock once this process has ended.
    std::function<bool()> mayLeave = [] { return false; };
    /// Ends this process soon, without unlocking.
    std::function<void()> leave = [] {};
};

/// Runs the screen lock: passes events to a `LockMachine` and performs its effects. It never leaves
/// the user at a lock that cannot be opened: where it cannot rule that out, it hands off to the
/// system's own lock.
///
/// Main thread only. Asynchronous operations interleave where they wait, so each one must check the
/// phase again when it resumes. The tasks refer to the session, which must live as long as the loop
/// runs them.
class LockSession {
  public:
    /// `handOffAfter` is in seconds; with `nullopt` the session never hands off because of time.
    LockSession(LockCollaborators around, OrvelCore::Backoff backoff,
                std::optional<double> handOffAfter);
    LockSession(const LockSession&) = delete;
    LockSession& operator=(const LockSession&) = delete;

    const OrvelCore::LockMachine& machine() const { return machine_; }
    bool isLocked() const { return machine_.isLocked(); }
    std::optional<double> handOffAfter() const { return machine_.handOffAfter; }
    void setHandOffAfter(std::optional<double> seconds) { machine_.handOffAfter = seconds; }
    /// The number of failed logins after which the account is locked; with `nullopt` passwords are
    /// never paused.
    void setAccountLimit(std::optional<int> limit) { machine_.backoff.accountLimit = limit; }
    bool unlocksWithMacOS() const { return machine_.unlocksWithMacOS; }
    void setUnlocksWithMacOS(bool unlocks) { machine_.unlocksWithMacOS = unlocks; }
    /// Whether `resumeIfMarked` would lock. Asked at launch, before any window may open.
    bool willResume() const;

    /// A lock that would be handed off at once, and that the system's own can replace, does not
    /// begin.
    OrvelSystem::Task<void> lock();
    OrvelSystem::Task<void> biometricAccepted();
    OrvelSystem::Task<void> macOSLocked();
    OrvelSystem::Task<void> macOSUnlocked();
    /// The macOS lock has ended without proof of an unlock, or can no longer be followed. The card
    /// takes passwords again.
    OrvelSystem::Task<void> macOSLockUnknown();
    /// The handler for the kiosk's `onDisturbed`.
    OrvelSystem::Task<void> desktopDisturbed();
    OrvelSystem::Task<void> tick();
    OrvelSystem::Task<void> submitPassword(OrvelSystem::Password password);
    /// The card has lost the keyboard, and steps to get it back were taken.
    OrvelSystem::Task<void> focusLost();
    /// The keyboard did not come back after those steps.
    OrvelSystem::Task<void> reclaimFailed();
    /// Locks again if the previous process died during a lock in this boot.
    OrvelSystem::Task<void> resumeIfMarked();
    void screensChanged();

    /// If it returns true, the app that was in front before the lock is not reactivated after it.
    std::function<bool()> keepsFocusOnUnlock = [] { return false; };
    /// Called when the lock has ended and everything has been given back.
    std::function<void()> onUncovered = [] {};
    /// Called once for every rejected password, even when the result came too late to count.
    std::function<void(OrvelCore::Date)> onFailedAttempt = [](OrvelCore::Date) {};

  private:
    OrvelSystem::Task<void> send(OrvelCore::LockEvent event);
    OrvelSystem::Task<void> perform(OrvelCore::LockEffect effect);
    OrvelSystem::Task<void> cover();
    void uncover();
    void engageMacOSLock();
    void leaveToSystemLock();
    OrvelSystem::Task<void> holdDesktop();
    OrvelSystem::Task<void> watchSystemLock();
    bool accountIsNearLimit() const;
    /// Whether the crash record could be written.
    bool mark();

    LockCollaborators around_;
    OrvelCore::LockMachine machine_;
    /// Times of the focus losses within the last `focusLossWindow`, in seconds, oldest first.
    std::vector<double> focusLosses_;
    /// When another program was first found to hold the desktop; `nullopt` while the session holds
    /// it.
    std::optional<double> desktopLostAt_;
    /// When, during a hand-off, the system's lock was first found not to hold the desktop;
    /// `nullopt` while it does.
    std::optional<double> systemLockMissingSince_;
    bool systemLockWasUp_ = false;
    /// The crash record of a lock that is about to begin is written.
    bool isMarked_ = false;
    /// This lock was left to the system's own, by this process or the one before it.
    bool wasLeft_ = false;
};

}  // namespace OrvelLock
