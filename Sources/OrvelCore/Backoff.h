#pragma once

#include <compare>
#include <optional>
#include <vector>

namespace OrvelCore {

/// The consequences of failed passwords.
struct Backoff {
    /// The number of the first failure that starts a cool-down; earlier failures have no
    /// consequence.
    int freeAttempts = 0;
    /// Cool-down lengths in seconds, in order. The last one repeats indefinitely.
    std::vector<double> schedule;
    /// The number of failed logins after which the account locks itself; `nullopt` if there is no
    /// limit or it is unknown.
    std::optional<int> accountLimit;

    /// The one that every lock uses: four failures have no consequence, and each further one starts
    /// a longer cool-down, up to an hour.
    static Backoff standard(std::optional<int> accountLimit);

    /// The length of the cool-down after that many failures, in seconds; 0 or less for none.
    double cooldown(int afterFailures) const;
    /// False if at most two failures remain before the account locks itself.
    bool passwordsAllowed(int afterFailures) const;

    auto operator<=>(const Backoff&) const = default;
};

}  // namespace OrvelCore
