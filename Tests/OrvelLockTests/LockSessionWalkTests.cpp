#include "LockSessionFixture.h"
#include "Support/Explore.h"

// Explores the states that a session can reach in a limited number of steps, with delayed answers,
// and checks the invariants between the steps. A session cannot be copied, so a state is
// represented by the steps that lead to it.

namespace {

/// Conditions that are fixed during one walk.
struct Circumstances {
    bool guard = true;
    bool writable = true;
    bool sensor = false;
    bool unlocksWithMacOS = true;
    std::optional<double> handOffAfter;
};

constexpr int nearLimit = 8;
constexpr std::size_t mostWaiting = 2;

struct World final : LockSessionTest {
    explicit World(const Circumstances& around) {
        guard = around.guard;
        sensor = around.sensor;
        markers.writable = around.writable;
        kiosk.engaging.answer.reset();
        session->setUnlocksWithMacOS(around.unlocksWithMacOS);
        session->setHandOffAfter(around.handOffAfter);
        presenter.onUncover = [this] { uncoveredWhileLocked |= session->isLocked(); };
    }
    ~World() override {
        while (kiosk.engaging.waiting()) kiosk.engaging.arrive(false);
        while (verifier.verifying.waiting()) verifier.verifying.arrive(PasswordUnavailable{});
        loop.drain();
    }
    void TestBody() override {}

    bool isLocked() const { return session->isLocked(); }
    void tick(double seconds) {
        loop.advance(seconds);
        run(session->tick());
    }
    void answer(PasswordResult result) {
        verifier.verifying.arrive(std::move(result));
        loop.drain();
    }
    long calls(std::string_view name) const { return std::ranges::count(log, name); }

    /// Mirrors the times that the session keeps privately.
    void remember(bool lostFocus) {
        const double now = loop.uptime();
        if (lostFocus && isLocked()) losses.push_back(now);
        std::erase_if(losses, [&](double loss) { return now - loss >= 10; });
        if (!isLocked()) losses.clear();
        if (calls("reassert") > 0 && kiosk.holds) desktopLostAt.reset();
        if (calls("reassert") > 0 && !kiosk.holds && !desktopLostAt) desktopLostAt = now;
        if (!isLocked() || session->machine().isHandedOff()) desktopLostAt.reset();
    }

    /// Mirrors the session's check of the system's lock.
    void rememberSystemLock() {
        const auto* const handed = std::get_if<LockPhases::HandedOff>(&session->machine().phase);
        if (!handed || calls("engageMacOSLock") > 0) {
            systemLockMissingSince.reset();
            systemLockWasUp = false;
        }
        if (std::exchange(kiosk.systemLockLooks, 0) == 0 || !handed) return;
        if (kiosk.systemLockHolds)
            systemLockMissingSince.reset();
        else if (!systemLockMissingSince)
            systemLockMissingSince = loop.uptime();
        systemLockWasUp |= kiosk.systemLockHolds;
    }

    std::optional<double> systemLockMissingSince;
    bool systemLockWasUp = false;
    bool uncoveredWhileLocked = false;
    std::vector<double> losses;
    std::optional<double> desktopLostAt;
};

struct Action {
    const char* name;
    std::function<void(World&)> act;
    std::function<bool(const World&)> isPossible = [](const World&) { return true; };
};

const auto verifies = [](const World& world) { return world.verifier.verifying.waiting() > 0; };
const auto engages = [](const World& world) { return world.kiosk.engaging.waiting() > 0; };

const Action actions[] = {
    {"lock", [](World& w) { w.lock(); },
     [](const World& w) { return w.kiosk.engaging.waiting() < mostWaiting; }},
    {"finger", [](World& w) { w.run(w.session->biometricAccepted()); },
     [](const World& w) { return w.sensor; }},
    {"macOS locked", [](World& w) { w.run(w.session->macOSLocked()); }},
    {"macOS unlocked", [](World& w) { w.run(w.session->macOSUnlocked()); }},
    {"macOS unknown", [](World& w) { w.run(w.session->macOSLockUnknown()); }},
    {"submit", [](World& w) { w.submit("x"); },
     [](const World& w) { return w.verifier.verifying.waiting() < mostWaiting; }},
    {"focus lost", [](World& w) { w.run(w.session->focusLost()); }},
    {"reclaim failed", [](World& w) { w.run(w.session->reclaimFailed()); }},
    {"resume", [](World& w) { w.run(w.session->resumeIfMarked()); }},
    {"tick", [](World& w) { w.tick(0.25); }},
    {"2 s", [](World& w) { w.tick(2); }},
    {"60 s", [](World& w) { w.tick(60); }},
    {"engaged", [](World& w) { w.kiosk.engaging.arrive(true), w.loop.drain(); }, engages},
    {"not engaged", [](World& w) { w.kiosk.engaging.arrive(false), w.loop.drain(); }, engages},
    {"accepted", [](World& w) { w.answer(PasswordAccepted{}); }, verifies},
    {"rejected", [](World& w) { w.answer(PasswordRejected{}); }, verifies},
    {"unavailable", [](World& w) { w.answer(PasswordUnavailable{}); }, verifies},
    {"desktop changes hands", [](World& w) { w.kiosk.desktopIsFree = !w.kiosk.desktopIsFree; }},
    {"system lock changes", [](World& w) { w.kiosk.systemLockHolds = !w.kiosk.systemLockHolds; }},
    {"account changes",
     [](World& w) {
         w.accountFailures = w.accountFailures ? std::nullopt : std::optional(nearLimit);
     }},
};

struct State {
    std::vector<const Action*> way;
    std::string known;

    const std::string& key() const { return known; }
    std::string description() const {
        std::string text;
        for (const auto* const action : way) text += fmt::format("{}, ", action->name);
        return text;
    }
};

/// Everything that the future can depend on; times are relative to now.
std::string keyOf(const World& world) {
    const auto& machine = world.session->machine();
    const double now = world.loop.uptime();
    const auto* const cooling = std::get_if<LockPhases::CoolingDown>(&machine.phase);
    const auto* const handed = std::get_if<LockPhases::HandedOff>(&machine.phase);
    std::string key = fmt::format(
        "{} {} {} {} {} {} {} {} {} {} {} {} {} {} {} {} {} {}", machine.phase.index(),
        machine.failures(), cooling ? std::max(0.0, cooling->until - now) : 0,
        handed ? std::min(2.0, now - handed->since) : 0, handed && handed->confirmed,
        machine.macOSLockedDuringLock, machine.timedHandOffDone,
        machine.isLocked() && machine.handOffAfter && !machine.timedHandOffDone
            ? std::min(*machine.handOffAfter, now - machine.lockedAt)
            : 0,
        world.kiosk.engaging.waiting(), world.verifier.verifying.waiting(), world.kiosk.holds,
        world.kiosk.desktopIsFree, world.accountFailures.has_value(),
        world.markers.marker.has_value(),
        world.desktopLostAt ? std::min(0.25, now - *world.desktopLostAt) : -1,
        world.kiosk.systemLockHolds, world.systemLockWasUp,
        world.systemLockMissingSince ? std::min(5.0, now - *world.systemLockMissingSince) : -1);
    for (const double loss : world.losses) key += fmt::format(" {}", now - loss);
    return key;
}

void take(World& world, const Action& action) {
    world.log.clear();
    action.act(world);
    world.remember(action.name == std::string_view("focus lost"));
    world.rememberSystemLock();
}

/// Checks that in any state a finger or the password unlocks.
void checkWaysOut(const std::function<void(World&)>& arrive, const Circumstances& around) {
    if (around.sensor) {
        World world(around);
        arrive(world);
        world.run(world.session->biometricAccepted());
        EXPECT_FALSE(world.isLocked());
        while (world.kiosk.engaging.waiting()) world.kiosk.engaging.arrive(true);
        world.loop.drain();
        EXPECT_FALSE(world.kiosk.holds) << "an answer that came late took the desktop";
        EXPECT_FALSE(world.presenter.covering);
    }
    World world(around);
    arrive(world);
    for (int round = 0; round < 6 && world.isLocked(); ++round) {
        const auto& phase = world.session->machine().phase;
        if (std::holds_alternative<LockPhases::PasswordsPaused>(phase)) {
            // There must be a sensor, or the lock would have been handed off.
            EXPECT_TRUE(around.sensor) << "nothing can end the lock";
            return;
        }
        while (world.kiosk.engaging.waiting()) world.kiosk.engaging.arrive(true);
        world.loop.drain();
        if (world.session->machine().isHandedOff()) {
            world.run(world.session->macOSLocked());
            // A login resets the account's count, but gives no proof of it.
            world.accountFailures.reset();
            world.run(world.session->macOSLockUnknown());
        }
        while (world.isLocked() && world.verifier.verifying.waiting())
            world.answer(PasswordUnavailable{});
        world.submit("right");
        if (world.verifier.verifying.waiting()) world.answer(PasswordAccepted{});
        if (world.isLocked() && !world.session->machine().isHandedOff()) world.tick(60);
    }
    EXPECT_FALSE(world.isLocked())
        << "the owner cannot unlock: " << world.session->machine().phase.index() << " "
        << fmt::format("{}", fmt::join(world.log, ", "));
}

/// Checks the invariants after one action; `before` is the machine before the action.
void checkPromises(const LockMachine& before, const World& world, const Circumstances& around) {
    const LockMachine& after = world.session->machine();
    const bool began = !before.isLocked() && after.isLocked();
    const bool ended = before.isLocked() && !after.isLocked();
    EXPECT_FALSE(world.uncoveredWhileLocked);
    EXPECT_EQ(world.presenter.covering, after.isLocked());
    EXPECT_EQ(world.calls("cover"), began);
    EXPECT_EQ(world.calls("uncover"), ended) << "a lock ends once";
    EXPECT_EQ(world.calls("uncovered"), ended);
    EXPECT_EQ(world.markers.marker.has_value(), after.isLocked() && around.writable);
    EXPECT_FALSE(world.kiosk.holds && (!after.isLocked() || after.isHandedOff()))
        << "an ended or handed-off lock holds the desktop";
    EXPECT_TRUE(world.calls("verify x") == 0 ||
                std::holds_alternative<LockPhases::Locked>(before.phase))
        << "a password reaches the verifier only from a card that is ready";
    EXPECT_EQ(world.calls("engageMacOSLock"), after.isHandedOff() && !before.isHandedOff());
    EXPECT_TRUE(!after.isLocked() || after.isHandedOff() || (around.guard && around.writable) ||
                before.isLocked())
        << "a lock that would not survive a crash is handed off";
    EXPECT_TRUE(!std::holds_alternative<LockPhases::PasswordsPaused>(after.phase) || around.sensor)
        << "the card takes neither a finger nor a password";
}

Explored walk(const Circumstances& around, int depth) {
    const World start(around);
    return explore(State{{}, keyOf(start)}, depth, [&](const State& state, const auto& visit) {
        const auto arrive = [&](World& world) {
            for (const auto* const action : state.way) take(world, *action);
        };
        SCOPED_TRACE(state.description());
        for (const auto& action : actions) {
            World world(around);
            arrive(world);
            if (!action.isPossible(world)) continue;
            const LockMachine before = world.session->machine();
            take(world, action);
            SCOPED_TRACE(action.name);
            checkPromises(before, world, around);
            visit(State{[&] {
                            auto way = state.way;
                            way.push_back(&action);
                            return way;
                        }(),
                        keyOf(world)});
        }
        checkWaysOut(arrive, around);
    });
}

TEST(LockSessionWalk, KeepsItsPromisesInEveryStateWithinReach) {
    Explored all{.isWhole = true};
    for (int bits = 0; bits < 32 && !HasFailure(); ++bits) {
        const Circumstances around{
            .guard = (bits & 1) == 0,
            .writable = (bits & 2) == 0,
            .sensor = (bits & 4) != 0,
            .unlocksWithMacOS = (bits & 8) == 0,
            .handOffAfter = (bits & 16) != 0 ? std::optional(5.0) : std::nullopt};
        SCOPED_TRACE(bits);
        // Most states are reachable only if the lock is not handed off at once.
        const bool isUsual = around.guard && around.writable && around.unlocksWithMacOS;
        all += walk(around, isUsual ? 5 : 4);
    }
    all.print("LockSession");
    EXPECT_GT(all.states, 1000U) << "too few states were reached";
}

// Random sequences are longer than the paths of the walk, whose depth is bounded.
TEST(LockSessionWalk, KeepsItsPromisesOnLongPaths) {
    std::mt19937 random(20260301);
    const auto pick = [&](std::size_t count) { return random() % count; };
    int locks = 0;
    for (int life = 0; life < 200 && !HasFailure(); ++life) {
        SCOPED_TRACE(life);
        const Circumstances around{
            .guard = pick(4) != 0,
            .writable = pick(4) != 0,
            .sensor = pick(2) != 0,
            .unlocksWithMacOS = pick(2) != 0,
            .handOffAfter = pick(2) != 0 ? std::optional<double>(pick(60)) : std::nullopt};
        World world(around);
        for (int step = 0; step < 300; ++step) {
            const auto& action = actions[pick(std::size(actions))];
            if (!action.isPossible(world)) continue;
            const LockMachine before = world.session->machine();
            take(world, action);
            SCOPED_TRACE(action.name);
            checkPromises(before, world, around);
            locks += world.calls("cover") > 0;
        }
    }
    EXPECT_GT(locks, 500);
}

}  // namespace
