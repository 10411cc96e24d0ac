#include "OrvelCore/LockMachine.h"
#include "OrvelCoreTests/LockMachineNotation.h"

using namespace LockMachineNotation;
using enum LockEvent;

namespace {

LockMachine machineIn(LockPhase phase, Backoff backoff = {5, {60, 300}, std::nullopt}) {
    LockMachine machine(std::move(backoff));
    machine.handle(lockRequested, 0);
    machine.phase = phase;
    return machine;
}

/// Handles one event and returns "phase: effects".
std::string after(LockMachine& machine, LockEvent event, double now) {
    const auto effects = machine.handle(event, now);
    return text(machine.phase) + ": " + text(effects);
}

}  // namespace

TEST(LockMachine, AnswersEveryEventInEveryPhase) {
    // The time is 100, with one failure; the cool-down ends at 160, and the hand-off was at 99.
    const std::vector<LockPhase> phases = {
        LockPhases::Locked{1}, LockPhases::Verifying{1}, LockPhases::CoolingDown{1, 160},
        LockPhases::PasswordsPaused{1}, LockPhases::HandedOff{1, 99, false}};
    const std::string idle = "idle: uncover";
    const std::string handed = "handed(1, 100, false): engage";
    const std::string paused = "paused(1): showPaused";
    const std::string none;  // ignored event
    const std::map<LockEvent, std::vector<std::string>> table = {
        {lockRequested, {none, none, none, none, none}},
        {passwordSubmitted, {"verifying(1): verify", none, none, none, none}},
        {passwordAccepted, {none, idle, none, none, none}},
        {passwordRejected, {none, "locked(2): showWrong", none, none, none}},
        {passwordUnavailable, {none, "locked(1): showUnavailable", none, none, none}},
        {biometricAccepted, {idle, idle, idle, idle, idle}},
        {clockTick, {none, none, none, none, none}},
        {handOff, {handed, handed, handed, handed, none}},
        {macOSLocked, {none, none, none, none, "handed(1, 99, true): "}},
        {macOSUnlocked, {none, none, none, none, none}},
        {macOSLockUnknown, {none, none, none, none, none}},
        {accountNearLimit, {paused, paused, none, none, none}},
    };
    ASSERT_EQ(table.size(), eventNames.size());
    for (const auto& [event, answers] : table) {
        for (std::size_t i = 0; i < phases.size(); ++i) {
            auto machine = machineIn(phases[i]);
            const std::string expected = answers[i].empty() ? text(phases[i]) + ": " : answers[i];
            EXPECT_EQ(after(machine, event, 100), expected)
                << text(event) << " in " << text(phases[i]);
            EXPECT_EQ(machine.macOSLockedDuringLock, event == macOSLocked);
            EXPECT_EQ(machine.lockedAt, 0);
        }
    }
}

TEST(LockMachine, RejectionsCost) {
    struct Case {
        std::string what;
        Backoff backoff;
        int failures;
        std::string expected;
    };
    const std::vector<Case> cases = {
        {"a free one", {5, {60, 300}, {}}, 3, "locked(4): showWrong"},
        {"the first that costs",
         {5, {60, 300}, {}},
         4,
         "cooling(5, 160): showWrong, showCooldown(160)"},
        {"the last of the schedule",
         {5, {60, 300}, {}},
         5,
         "cooling(6, 400): showWrong, showCooldown(400)"},
        {"beyond the schedule",
         {5, {60, 300}, {}},
         50,
         "cooling(51, 400): showWrong, showCooldown(400)"},
        {"no schedule", {0, {}, {}}, 50, "locked(51): showWrong"},
        {"a step of 0", {0, {0, 60}, {}}, -1, "locked(0): showWrong"},
        {"a negative step", {1, {-5}, {}}, 0, "locked(1): showWrong"},
        {"below the account's limit", {9, {60}, 6}, 2, "locked(3): showWrong"},
        {"near the account's limit", {9, {60}, 6}, 3, "paused(4): showWrong, showPaused"},
        {"the limit beats the cool-down", {1, {60}, 4}, 1, "paused(2): showWrong, showPaused"},
        {"a tiny limit", {5, {60}, 2}, 0, "paused(1): showWrong, showPaused"},
    };
    for (const auto& c : cases) {
        auto machine = machineIn(LockPhases::Verifying{c.failures}, c.backoff);
        EXPECT_EQ(after(machine, passwordRejected, 100), c.expected) << c.what;
    }
}

TEST(LockMachine, TimesCountAsElapsedWhenReached) {
    auto cooling = machineIn(LockPhases::CoolingDown{5, 160});
    EXPECT_EQ(after(cooling, clockTick, 159.999), "cooling(5, 160): ");
    EXPECT_EQ(after(cooling, clockTick, 160), "locked(5): showReady");

    auto handed = machineIn(LockPhases::HandedOff{3, 100, false});
    EXPECT_EQ(after(handed, clockTick, 101.999), "handed(3, 100, false): ");
    EXPECT_EQ(after(handed, clockTick, 102), "locked(3): showReady");

    auto confirmed = machineIn(LockPhases::HandedOff{3, 100, true});
    EXPECT_EQ(after(confirmed, clockTick, 1e6), "handed(3, 100, true): ");
}

TEST(LockMachine, HandsOffByTimeOnceALockFromEveryPhase) {
    for (const LockPhase& phase :
         {LockPhase(LockPhases::Locked{1}), LockPhase(LockPhases::Verifying{1}),
          LockPhase(LockPhases::CoolingDown{1, 20}), LockPhase(LockPhases::PasswordsPaused{1})}) {
        auto machine = machineIn(phase);
        machine.handOffAfter = 30;
        machine.handle(clockTick, 19.5);
        EXPECT_EQ(machine.phase, phase);
        EXPECT_EQ(after(machine, clockTick, 30), "handed(1, 30, false): engage");
        EXPECT_EQ(after(machine, clockTick, 32), "locked(1): showReady");
        EXPECT_EQ(after(machine, clockTick, 100), "locked(1): ");
    }
}

TEST(LockMachine, AHandOffByHandLeavesTheTimedOneToCome) {
    auto machine = machineIn(LockPhases::Locked{0});
    machine.handOffAfter = 30;
    machine.handle(handOff, 10);
    machine.handle(clockTick, 12);
    EXPECT_EQ(after(machine, clockTick, 30), "handed(0, 30, false): engage");
    // During a hand-off the timed one neither fires nor is used up.
    auto late = machineIn(LockPhases::HandedOff{0, 29, false});
    late.handOffAfter = 30;
    EXPECT_EQ(after(late, clockTick, 30), "handed(0, 29, false): ");
    EXPECT_EQ(after(late, clockTick, 31), "locked(0): showReady");
    EXPECT_EQ(after(late, clockTick, 31.5), "handed(0, 31.5, false): engage");
}

TEST(LockMachine, AnUnlockOfMacOSCountsOnlyAfterItsLock) {
    for (const bool unlocks : {true, false}) {
        auto machine = machineIn(LockPhases::HandedOff{2, 99, false});
        machine.unlocksWithMacOS = unlocks;
        EXPECT_EQ(after(machine, macOSUnlocked, 100), "handed(2, 99, false): ");
        machine.handle(macOSLocked, 100);
        EXPECT_EQ(after(machine, macOSUnlocked, 101),
                  unlocks ? "idle: uncover" : "locked(2): showReady");
        if (!unlocks) {
            EXPECT_TRUE(machine.macOSLockedDuringLock);
            EXPECT_EQ(after(machine, macOSUnlocked, 102), "locked(2): ");
        }
    }
}
