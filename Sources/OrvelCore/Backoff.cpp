#include "OrvelCore/Backoff.h"

#include <algorithm>
#include <cstddef>

namespace OrvelCore {

namespace {

// An account that locks itself is worse than a lock that takes no passwords, so two of its
// attempts are left untouched.
constexpr int attemptsKeptForTheAccount = 2;

}  // namespace

double Backoff::cooldown(int afterFailures) const {
    if (afterFailures < freeAttempts || schedule.empty()) return 0;
    const auto step = static_cast<std::size_t>(afterFailures - freeAttempts);
    return schedule[std::min(step, schedule.size() - 1)];
}

bool Backoff::passwordsAllowed(int afterFailures) const {
    return !accountLimit || *accountLimit - attemptsKeptForTheAccount > afterFailures;
}

}  // namespace OrvelCore
