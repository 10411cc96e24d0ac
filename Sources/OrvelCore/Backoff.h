#pragma once

#include <compare>
#include <optional>
#include <vector>

namespace OrvelCore {

/// What failed passwords cost.
struct Backoff {
    /// The first cool-down falls on this failure; those before it are free.
    int freeAttempts = 0;
    /// Cool-down lengths in seconds, in order; the last one repeats for ever.
    std::vector<double> schedule;
    /// The account's own limit of failed logins; nothing when it has none or it is not known.
    std::optional<int> accountLimit;

    /// Seconds without passwords after that many failures; 0 or less for none.
    double cooldown(int afterFailures) const;
    /// False once another failure would come within one of locking the account itself.
    bool passwordsAllowed(int afterFailures) const;

    auto operator<=>(const Backoff&) const = default;
};

}  // namespace OrvelCore
