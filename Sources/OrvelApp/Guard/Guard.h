#pragma once

#include <compare>
#include <optional>
#include <string>

#include "OrvelCore/AppUnlockMachine.h"
#include "OrvelCore/GuardPolicy.h"
#include "OrvelCore/LockMarker.h"

namespace OrvelApp {

/// What the guard needs from its environment. No function here blocks.
class GuardSurroundings {
  public:
    virtual ~GuardSurroundings() = default;

    /// Seconds of a clock that continues while the machine sleeps.
    virtual double now() const = 0;

    /// The marker on disk; `nullopt` without a valid one.
    virtual std::optional<OrvelCore::LockMarker> marker() const = 0;
    /// Writes a marker of this boot. Returns false when that fails.
    virtual bool mark() = 0;
    virtual void clearMarker() = 0;

    virtual bool appRuns() = 0;
    /// Starts the app. `appRuns` tells whether that succeeded.
    virtual void relaunch() = 0;

    /// Asks for the system's own lock; the fallback asks in the other available way.
    virtual void engageLock() = 0;
    virtual void engageLockFallback() = 0;
    virtual bool systemIsLocked() = 0;
    /// The session of a lock stays closed by itself when the app ends, until a locker takes the
    /// lock over. Others are shut out as soon as one has it.
    virtual bool staysClosed() const { return false; }

    /// Covers everything with the stand-in; `Guard::standInRose` is called afterwards. Does nothing
    /// while it is up.
    virtual void hide() = 0;
    /// Removes the stand-in; `Guard::standInFell` is called afterwards.
    virtual void reveal() = 0;
    /// Shows one line on the stand-in; empty for none.
    virtual void say(const std::string& text) = 0;

    /// Starts to check the password that preceded `Guard::entered`; `Guard::checked` is called with
    /// the result.
    virtual void checkPassword() = 0;
    virtual void recordFailedAttempt() = 0;
};

/// The crash guard. It is told what happens to the app and to the stand-in, decides, and acts. It
/// never leaves a lock open: when the app has ended, the stand-in hides the screen until the app
/// covers it again or the owner types the password at the stand-in. A locker may appear over the
/// stand-in; its end proves nothing and does not open the stand-in.
///
/// Copyable like a value: its environment is passed to each call.
class Guard {
  public:
    explicit Guard(std::string bootSession);

    void started(GuardSurroundings& system);
    /// The app does nothing any more, but the kernel still has to end it; `appExited` follows.
    /// Optional.
    void appEnds(GuardSurroundings& system);
    void appExited(GuardSurroundings& system);
    /// The stand-in is up: the app is gone, or `hide` was called.
    void standInRose(GuardSurroundings& system);
    /// The app covers the screen again, or `reveal` was called.
    void standInFell();

    /// The owner has pressed Return at the stand-in. `isEmpty`: without typing a password.
    void entered(GuardSurroundings& system, bool isEmpty);
    enum class Verdict { accepted, rejected, unavailable };
    void checked(GuardSurroundings& system, Verdict verdict);

    /// Call it every half second while `needsTicks`.
    void tick(GuardSurroundings& system);
    bool needsTicks() const { return isUp_ || isClosed_ || confirmUntil_.has_value(); }

    auto operator<=>(const Guard&) const = default;

  private:
    bool isMarked(const GuardSurroundings& system) const;
    void perform(GuardSurroundings& system, OrvelCore::GuardAction action);
    void relaunch(GuardSurroundings& system);
    void engageLock(GuardSurroundings& system);
    void handle(GuardSurroundings& system, OrvelCore::AppUnlockMachine::Event event);
    /// Since when the app has not covered the screen, in seconds of `now`.
    double waitingSince() const;
    void say(GuardSurroundings& system) const;

    std::string bootSession_;
    /// The time of the last relaunch, including relaunches that the owner requested; `nullopt`
    /// before the first. In seconds of `now`.
    std::optional<double> lastRelaunch_;
    /// Seconds without the app after which it is started again.
    double relaunchDelay_ = OrvelCore::GuardPolicy::relaunchCooldown;
    bool isUp_ = false;
    /// The app is gone from a session that stays closed.
    bool isClosed_ = false;
    /// Since when one or the other.
    double upSince_ = 0;
    /// Until when the system's lock has to report that it is on; `nullopt` while no report is
    /// awaited. In seconds of `now`.
    std::optional<double> confirmUntil_;
    OrvelCore::AppUnlockMachine unlock_;
    std::string verdict_;  // the result of the last password, as shown to the owner
};

}  // namespace OrvelApp
