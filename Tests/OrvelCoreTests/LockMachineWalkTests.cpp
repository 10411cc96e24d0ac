#include "OrvelCoreTests/LockMachineNotation.h"

#include "Support/Explore.h"

// Explores every state that a lock can reach on a coarse clock, and checks invariants that hold for
// any sequence of events, independently of the implementation.

using namespace LockMachineNotation;
using enum LockEvent;

namespace {

constexpr double lastMoment = 7;
constexpr int mostFailures = 4;

/// What can be known without access to the machine's internals.
struct Onlooker {
    bool sawMacOSLock = false;
    double passwordsBarredUntil = 0;
    auto operator<=>(const Onlooker&) const = default;
};

struct State {
    LockMachine machine;
    Onlooker onlooker;
    double now = 0;

    auto key() const {
        const auto* cooling = std::get_if<LockPhases::CoolingDown>(&machine.phase);
        const auto* handed = std::get_if<LockPhases::HandedOff>(&machine.phase);
        return std::tuple(machine.phase.index(), machine.failures(), cooling ? cooling->until : 0,
                          handed ? handed->since : 0, handed && handed->confirmed,
                          machine.macOSLockedDuringLock, machine.unlocksWithMacOS, machine.lockedAt,
                          machine.timedHandOffDone, onlooker, now);
    }
    std::string description() const {
        return fmt::format("{} at {}, locked at {}", text(machine.phase), now, machine.lockedAt);
    }
};

template <class Phase>
bool isIn(const LockMachine& machine) {
    return std::holds_alternative<Phase>(machine.phase);
}

template <class Effect>
bool has(const std::vector<LockEffect>& effects) {
    for (const auto& effect : effects) {
        if (std::holds_alternative<Effect>(effect)) return true;
    }
    return false;
}

// The back-off schedule of the walk, computed independently of the implementation.
double price(int failures) {
    return failures < 2 ? 0 : failures == 2 ? 2 : 3;
}
const Backoff walkedBackoff{2, {2, 3}, std::nullopt};

void checkStep(const State& before, LockEvent event, const State& after,
               const std::vector<LockEffect>& effects) {
    const LockMachine& old = before.machine;
    const LockMachine& now = after.machine;
    const auto promise = [&](bool isKept, const char* what) {
        if (isKept) return;
        ADD_FAILURE() << what << ": " << text(event) << " in " << before.description() << " gave "
                      << after.description() << " and " << text(effects);
    };
    const bool wasVerifying = isIn<LockPhases::Verifying>(old);

    const bool ended = old.isLocked() && !now.isLocked();
    const bool mayEnd =
        event == biometricAccepted || (event == passwordAccepted && wasVerifying) ||
        (event == macOSUnlocked && old.unlocksWithMacOS && before.onlooker.sawMacOSLock);
    promise(!ended || mayEnd, "there are three ways out");
    promise(has<LockEffects::Uncover>(effects) == ended, "the end of a lock uncovers");
    const bool wasConfirmed = old.isHandedOff() && before.onlooker.sawMacOSLock;
    promise(
        event != macOSLockUnknown || (wasConfirmed ? isIn<LockPhases::Locked>(now) : old == now),
        "a macOS lock that ends without a proof brings the card back");
    promise(has<LockEffects::Cover>(effects) == (!old.isLocked() && now.isLocked()),
            "the start of a lock covers");

    const bool isAnswer =
        event == passwordAccepted || event == passwordRejected || event == passwordUnavailable;
    promise(!isAnswer || wasVerifying || (old == now && effects.empty()),
            "a late answer of the verifier means nothing");

    const bool isRejection = event == passwordRejected && wasVerifying;
    if (old.isLocked() && now.isLocked()) {
        promise(now.failures() == old.failures() + (isRejection ? 1 : 0),
                "failures are counted one by one and never forgiven within a lock");
    }
    promise(has<LockEffects::ShowWrongPassword>(effects) == isRejection,
            "a rejection is shown, and nothing else is taken for one");

    const bool handsOff = now.isHandedOff() && !old.isHandedOff();
    promise(has<LockEffects::EngageMacOSLock>(effects) == handsOff,
            "asking for the macOS lock is waiting for it");
    promise(!handsOff ||
                now.phase == LockPhase(LockPhases::HandedOff{old.failures(), after.now, false}),
            "a hand-off begins unconfirmed, at its own time");

    const bool verifies = isIn<LockPhases::Verifying>(now) && !wasVerifying;
    promise(has<LockEffects::VerifyPassword>(effects) == verifies, "verifying is asked for once");
    promise(!verifies ||
                (isIn<LockPhases::Locked>(old) && after.now >= after.onlooker.passwordsBarredUntil),
            "a password is checked from the ready card, after its cool-down");
    const auto* cooling = std::get_if<LockPhases::CoolingDown>(&now.phase);
    promise(!cooling || cooling->until >= after.onlooker.passwordsBarredUntil,
            "a cool-down is no shorter than its price");
    promise(!isIn<LockPhases::PasswordsPaused>(old) || !now.isLocked() || now.isHandedOff() ||
                isIn<LockPhases::PasswordsPaused>(now),
            "a pause has no end of its own");
}

State step(const State& before, LockEvent event, double now) {
    State after = before;
    after.now = now;
    const auto effects = after.machine.handle(event, now);
    const bool isNewLock = !before.machine.isLocked() && after.machine.isLocked();
    if (isNewLock) after.onlooker = {};
    if (after.machine.isLocked() && event == macOSLocked) after.onlooker.sawMacOSLock = true;
    const int failures = after.machine.failures();
    if (failures > before.machine.failures() && !isIn<LockPhases::PasswordsPaused>(after.machine))
        after.onlooker.passwordsBarredUntil = now + price(failures);
    // The macOS lock asks for the account's password itself, so it replaces the cool-down.
    if (after.machine.isHandedOff() || !after.machine.isLocked())
        after.onlooker.passwordsBarredUntil = 0;
    checkStep(before, event, after, effects);
    return after;
}

/// Checks that from any state a finger, a password or the macOS lock can unlock.
void checkWaysOut(const State& state) {
    const auto leadsOut = [&](std::vector<std::pair<LockEvent, double>> script) {
        LockMachine machine = state.machine;
        for (const auto& [event, wait] : script) machine.handle(event, state.now + wait);
        return !machine.isLocked();
    };
    EXPECT_TRUE(leadsOut({{biometricAccepted, 0}})) << state.description();
    EXPECT_TRUE(leadsOut({{handOff, 0},
                          {macOSLocked, 0},
                          {macOSUnlocked, 0},
                          {passwordSubmitted, 0},
                          {passwordAccepted, 0}}))
        << state.description();

    const auto* handedOff = std::get_if<LockPhases::HandedOff>(&state.machine.phase);
    if (isIn<LockPhases::PasswordsPaused>(state.machine) || (handedOff && handedOff->confirmed))
        return;
    // The first tick may end a hand-off, the second may start the timed one, and the last ends
    // that.
    EXPECT_TRUE(leadsOut({{passwordUnavailable, 0},
                          {clockTick, 1000},
                          {clockTick, 1002},
                          {clockTick, 1004},
                          {passwordSubmitted, 1004},
                          {passwordAccepted, 1005}}))
        << state.description();
}

Explored walk(std::optional<int> accountLimit, std::optional<double> handOffAfter) {
    State start;
    start.machine.backoff = walkedBackoff;
    start.machine.backoff.accountLimit = accountLimit;
    start.machine.handOffAfter = handOffAfter;
    // Only the end of the clock bounds the walk.
    constexpr int unbounded = 1000;
    return explore(start, unbounded, [](const State& state, const auto& reach) {
        const auto visit = [&](State following) {
            if (following.machine.failures() <= mostFailures) reach(std::move(following));
        };
        if (state.machine.isLocked()) checkWaysOut(state);
        for (const double elapsed : {0.0, 1.0, 2.0}) {
            if (state.now + elapsed > lastMoment) continue;
            for (int event = 0; event < static_cast<int>(eventNames.size()); ++event)
                visit(step(state, static_cast<LockEvent>(event), state.now + elapsed));
        }
        State changed = state;  // the user can change the setting at any time
        changed.machine.unlocksWithMacOS = !changed.machine.unlocksWithMacOS;
        visit(changed);
    });
}

}  // namespace

TEST(LockMachineWalk, KeepsItsPromisesInEveryReachableState) {
    Explored all{.isWhole = true};
    for (const std::optional<int> limit : {std::optional<int>(), std::optional(5)}) {
        for (const auto handOffAfter :
             {std::optional<double>(), std::optional(0.0), std::optional(3.0)}) {
            const auto walked = walk(limit, handOffAfter);
            EXPECT_GT(walked.states, 5000U) << "too few states were reached";
            ASSERT_FALSE(HasFailure()) << "with the limit " << limit.value_or(-1)
                                       << " and a hand-off after " << handOffAfter.value_or(-1);
            all += walked;
        }
    }
    all.print("LockMachine");
    EXPECT_TRUE(all.isWhole);
}
