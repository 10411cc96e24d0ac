#pragma once

#include <compare>
#include <optional>
#include <string>

#include "OrvelCore/AppUnlockMachine.h"
#include "OrvelCore/GuardPolicy.h"
#include "OrvelCore/LockMarker.h"

namespace OrvelApp {

/// What the guard needs of its surroundings. Nothing here waits.
class GuardSurroundings {
  public:
    virtual ~GuardSurroundings() = default;

    /// Seconds of a clock that goes on while the machine sleeps.
    virtual double now() const = 0;

    virtual std::optional<OrvelCore::LockMarker> marker() const = 0;
    /// Writes a marker of this boot; false when that fails.
    virtual bool mark() = 0;
    virtual void clearMarker() = 0;

    virtual bool appRuns() = 0;
    /// Starts the app. Whether it came up is for `appRuns` to tell.
    virtual void relaunch() = 0;

    /// Asks for the system's own lock, and the second time in the other way that there is.
    virtual void engageLock() = 0;
    virtual void engageLockFallback() = 0;
    virtual bool systemIsLocked() = 0;
    /// The session of a lock stays closed by itself when the app ends, until a locker takes the
    /// lock over. Others are shut out as soon as one has it.
    virtual bool staysClosed() const { return false; }

    /// Puts the stand-in over everything; `Guard::standInRose` follows. Harmless while it is up.
    virtual void hide() = 0;
    /// Takes the stand-in away; `Guard::standInFell` follows.
    virtual void reveal() = 0;
    /// One line on the stand-in; empty for none.
    virtual void say(const std::string& text) = 0;

    /// Has the password checked that was given to `Guard::entered`; `Guard::checked` follows.
    virtual void checkPassword() = 0;
    virtual void recordFailedAttempt() = 0;
};

/// The crash guard: told what becomes of the app and of the stand-in, it decides and acts. A lock
/// is never left open: from the app's end on the stand-in hides the screen until the app covers it
/// again, or until the owner's password is given to the stand-in itself. A locker may come and go
/// over it; that one's end proves nothing.
///
/// A value, but for its surroundings, which each call names.
class Guard {
  public:
    explicit Guard(std::string bootSession);

    void started(GuardSurroundings& system);
    void appExited(GuardSurroundings& system);
    /// The stand-in is up: the app is gone, or `hide` was called.
    void standInRose(GuardSurroundings& system);
    /// The app covers the screen again, or `reveal` was called.
    void standInFell();

    /// The owner has pressed Return at the stand-in, after a password or after nothing.
    void entered(GuardSurroundings& system, bool isEmpty);
    enum class Verdict { accepted, rejected, unavailable };
    void checked(GuardSurroundings& system, Verdict verdict);

    /// To be called every half second while `needsTicks`.
    void tick(GuardSurroundings& system);
    bool needsTicks() const { return isUp_ || isClosed_ || confirmUntil_.has_value(); }

    auto operator<=>(const Guard&) const = default;

  private:
    bool isMarked(const GuardSurroundings& system) const;
    void perform(GuardSurroundings& system, OrvelCore::GuardAction action);
    void relaunch(GuardSurroundings& system);
    void engageLock(GuardSurroundings& system);
    void handle(GuardSurroundings& system, OrvelCore::AppUnlockMachine::Event event);
    void say(GuardSurroundings& system) const;

    std::string bootSession_;
    /// Every relaunch counts, also one that the owner has asked for.
    std::optional<double> lastRelaunch_;
    bool isUp_ = false;
    /// The app is gone from a session that stays closed.
    bool isClosed_ = false;
    /// Since when one or the other.
    double upSince_ = 0;
    /// Until when the system's lock may take to say that it is on.
    std::optional<double> confirmUntil_;
    OrvelCore::AppUnlockMachine unlock_;
    std::string verdict_;  // what the last password came to, for the owner
};

}  // namespace OrvelApp
