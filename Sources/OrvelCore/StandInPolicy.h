#pragma once

#include <compare>
#include <optional>

#include "OrvelCore/GuardPolicy.h"

namespace OrvelCore {

enum class StandInAction { keep, relaunch, withdraw };

/// How long the stand-in stays up. It goes when the system's lock has come and gone, and when an
/// app that was started anew takes it over. The rest bounds the time in which the owner has nothing
/// to open: a stand-in that no lock follows never stays.
class StandInPolicy {
  public:
    /// Seconds. Without a marker no app would resume the lock, so only the system's lock, which has
    /// been asked for, may still come.
    static constexpr double unmarkedPatience = 5;
    /// Seconds until an app that had better not be relaunched is relaunched all the same.
    static constexpr double patience = GuardPolicy::relaunchCooldown;
    /// Seconds that this one has to take over.
    static constexpr double lastPatience = 30;

    struct Situation {
        double now = 0;  // seconds
        bool marked = false;
        bool appRuns = false;
        bool systemIsLocked = false;
        /// The owner has asked for the app.
        bool asked = false;
    };
    /// To be asked now and then while the stand-in is up.
    StandInAction next(const Situation& situation);
    /// It is no longer up.
    void reset() { *this = {}; }

    auto operator<=>(const StandInPolicy&) const = default;

  private:
    std::optional<double> since_;
    bool sawLock_ = false;
    bool relaunched_ = false;
};

}  // namespace OrvelCore
