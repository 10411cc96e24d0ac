#include "OrvelCore/Backoff.h"

#include <algorithm>
#include <cstddef>

namespace OrvelCore {

namespace {

// A locked account is worse than a lock that refuses passwords, so we leave two of the account's
// attempts unused.
constexpr int attemptsKeptForTheAccount = 2;

}  // namespace

Backoff Backoff::standard(std::optional<int> accountLimit) {
    return {.freeAttempts = 5, .schedule = {60, 300, 900, 3600}, .accountLimit = accountLimit};
}

double Backoff::cooldown(int afterFailures) const {
    if (afterFailures < freeAttempts || schedule.empty()) return 0;
    const auto step = static_cast<std::size_t>(afterFailures - freeAttempts);
    return schedule[std::min(step, schedule.size() - 1)];
}

bool Backoff::passwordsAllowed(int afterFailures) const {
    return !accountLimit || *accountLimit - attemptsKeptForTheAccount > afterFailures;
}

}  // namespace OrvelCore
