#include "OrvelApp/Guard/Guard.h"

#include "Support/Explore.h"

// Explores what happens to a lock while the app, the guard and the system's own lock start and end
// in any order, and while the owner and others type into the stand-in.

using OrvelCore::GuardPolicy::relaunchCooldown;

namespace {

constexpr double lastMoment = 1300;
constexpr double never = -1e9;

/// A guard and everything that it interacts with.
struct State final : GuardSurroundings {
    double time = 0;
    bool canMark = true;
    bool marked = true;
    bool appIsUp = true;
    bool appStarts = true;  // whether a start of the app succeeds
    bool guardRuns = true;
    Guard guard{"boot"};
    bool hidden = false;  // by the stand-in
    bool checking = false;
    // State of the system.
    bool closes = false;     // the session of a lock stays closed without the app
    bool handedOff = false;  // the app has left the lock to the system's
    bool wasAsked = false;   // for the system's lock, since the app last ran
    bool isLocked = false;
    /// When this guard last started the app without a request of the owner.
    double unasked = never;
    bool isAsked = false;
    // Whether the owner's password was given since the lock began.
    bool proven = false;
    std::string said;

    auto key() const {
        return std::tuple(time, canMark, marked, appIsUp, appStarts, guardRuns, guard, hidden,
                          checking, wasAsked, isLocked, unasked, proven);
    }
    std::string description() const {
        return fmt::format("at {}: marked {}, app {}, guard {}, hidden {}, asked {}, locked {}",
                           time, marked, appIsUp, guardRuns, hidden, wasAsked, isLocked);
    }

    double now() const override { return time; }
    std::optional<LockMarker> marker() const override {
        if (!marked) return {};
        return LockMarker{.bootSession = "boot", .isHandedOff = handedOff};
    }
    bool mark() override {
        EXPECT_FALSE(proven) << "marked without a lock: " << description();
        return marked = marked || canMark;
    }
    void clearMarker() override {
        EXPECT_TRUE(proven) << "unmarked without a password: " << description();
        marked = false;
    }
    bool appRuns() override { return appIsUp; }
    void relaunch() override {
        EXPECT_TRUE(hidden || proven || closes) << "open while the app starts: " << description();
        EXPECT_FALSE(appIsUp) << "started twice: " << description();
        if (!isAsked && !proven) {
            EXPECT_GE(time - unasked, relaunchCooldown) << description();
            unasked = time;
        }
        appIsUp = appStarts;
    }
    void engageLock() override { wasAsked = true; }
    void engageLockFallback() override { EXPECT_FALSE(isLocked) << description(); }
    bool systemIsLocked() override { return isLocked; }
    bool staysClosed() const override { return closes; }
    void hide() override {
        if (hidden || closes) return;
        hidden = true;
        guard.standInRose(*this);
    }
    void reveal() override {
        EXPECT_TRUE(proven) << "open without a password: " << description();
        hidden = false;
        guard.standInFell();
    }
    void say(const std::string& text) override {
        EXPECT_TRUE(!text.empty() || appIsUp) << "the owner sees what to do: " << description();
        said = text;
    }
    void checkPassword() override { checking = true; }
    void recordFailedAttempt() override {}
};

/// Visits every state that can follow.
void follow(const State& state, const auto& visit) {
    const auto when = [&](bool isPossible, const auto& change) {
        if (!isPossible) return;
        State after = state;
        change(after);
        EXPECT_TRUE(!after.marked || after.proven || after.appIsUp || after.hidden ||
                    !after.guardRuns)
            << "a lock is left open: " << after.description();
        visit(after);
    };
    for (const double seconds : {5.0, 300.0}) {
        when(state.time + seconds <= lastMoment, [&](State& s) {
            s.time += seconds;
            if (!s.guardRuns) return;
            s.guard.tick(s);
            EXPECT_FALSE(s.hidden && s.said.empty()) << "the app hangs: " << s.description();
        });
    }
    when(true, [](State& s) { s.appStarts = !s.appStarts; });
    when(state.appIsUp && state.guardRuns && !state.proven, [](State& s) {
        s.guard.appEnds(s);
        EXPECT_TRUE(s.hidden || !s.marked) << "not hidden at once: " << s.description();
    });
    when(state.appIsUp, [](State& s) {
        s.appIsUp = s.wasAsked = s.isAsked = false;
        // The server maps the stand-in before or after the guard notices the exit.
        const bool wasLocked = !s.proven;
        if (!s.guardRuns) return;
        if (wasLocked) s.hide();
        s.guard.appExited(s);
        EXPECT_TRUE(!wasLocked || s.wasAsked) << "no lock was asked for: " << s.description();
    });
    // The app covers the screen and replaces the stand-in.
    when(state.appIsUp && state.hidden, [](State& s) {
        s.hidden = s.checking = false;
        s.guard.standInFell();
    });
    when(state.appIsUp && !state.hidden, [](State& s) {
        // A lock ends, or begins; its marker cannot always be written.
        s.proven = !s.proven;
        s.marked = !s.proven && s.canMark;
        s.unasked = s.proven ? s.unasked : never;
    });
    when(!state.marked, [](State& s) { s.canMark = !s.canMark; });
    when(state.guardRuns, [](State& s) {
        // The killed guard's stand-in is gone until it restarts, and the restarted guard has lost
        // its state.
        s.guardRuns = s.hidden = s.checking = false;
        s.guard = Guard("boot");
        s.unasked = never;
    });
    when(!state.guardRuns, [](State& s) {
        s.guardRuns = true;
        s.guard.started(s);
    });
    when(state.hidden, [](State& s) {
        s.isAsked = true;
        s.guard.entered(s, true);
        s.isAsked = false;
    });
    when(state.hidden, [](State& s) { s.guard.entered(s, false); });
    when(state.checking, [](State& s) {
        s.checking = false;
        s.guard.checked(s, Guard::Verdict::rejected);
    });
    when(state.checking, [](State& s) {
        s.checking = false;
        s.guard.checked(s, Guard::Verdict::unavailable);
    });
    when(state.checking, [](State& s) {
        s.checking = false;
        s.proven = true;
        s.guard.checked(s, Guard::Verdict::accepted);
        EXPECT_FALSE(s.hidden || s.marked) << "the password is right: " << s.description();
    });
    when(state.wasAsked && !state.isLocked, [](State& s) { s.isLocked = true; });
    // An end of the system's lock proves nothing.
    when(state.isLocked, [](State& s) { s.isLocked = s.wasAsked = false; });
}

/// Checks that the owner can unlock from any state of the stand-in, with or without the app.
void checkWaysOut(const State& state) {
    State later = state;
    later.time += 3600;  // the longest cool-down
    later.guard.tick(later);
    if (!later.checking) later.guard.entered(later, false);
    EXPECT_TRUE(later.checking) << "no password is taken: " << state.description();
    later.checking = false;
    later.proven = true;
    later.guard.checked(later, Guard::Verdict::accepted);
    EXPECT_FALSE(later.hidden) << "the owner is shut out: " << state.description();

    State asking = state;
    asking.appStarts = asking.canMark = asking.isAsked = true;
    asking.guard.entered(asking, true);
    EXPECT_TRUE(asking.appIsUp) << "the app does not come back: " << state.description();
}

TEST(GuardWalk, NeverLeavesALockOpen) {
    constexpr int depth = 8;
    const auto all = explore(State(), depth, [](const State& state, const auto& visit) {
        follow(state, visit);
        if (state.guardRuns && state.hidden) checkWaysOut(state);
    });
    all.print("Guard");
    EXPECT_GT(all.states, 5000U) << "too few states were reached";
}

TEST(Guard, TakesNoPasswordForAMinuteAfterTheFifthWrongOne) {
    State state;
    state.appIsUp = state.appStarts = false;
    state.hide();
    const auto isChecked = [&] {
        state.guard.entered(state, false);
        return std::exchange(state.checking, false);
    };
    for (int wrong = 1; wrong <= 5; ++wrong) {
        EXPECT_TRUE(isChecked()) << wrong;
        state.guard.checked(state, Guard::Verdict::rejected);
        EXPECT_THAT(state.said, HasSubstr("Incorrect password."));
    }
    state.time += 59;
    state.guard.tick(state);
    EXPECT_FALSE(isChecked());
    state.time += 1;
    state.guard.tick(state);
    EXPECT_TRUE(isChecked());

    state.hidden = false;
    state.guard.standInFell();
    state.hide();
    EXPECT_THAT(state.said, Not(HasSubstr("Incorrect"))) << "that was the last lock's";
}

TEST(Guard, LeavesAClosedSessionToTheAppFirstAndToALockerOnceThatDoesNotHelp) {
    State state;
    state.closes = true;
    const auto dies = [&] {
        state.appIsUp = false;
        state.guard.appExited(state);
    };
    dies();
    EXPECT_TRUE(state.appIsUp);
    EXPECT_FALSE(state.wasAsked) << "a locker that is faster shuts the app out";
    EXPECT_FALSE(state.hidden);

    state.time += 5;
    dies();
    EXPECT_FALSE(state.appIsUp);
    EXPECT_TRUE(state.wasAsked);
    // Nothing says whether a locker has come, and the owner has to get in.
    state.time += relaunchCooldown - 6;
    state.guard.tick(state);
    EXPECT_FALSE(state.appIsUp);
    EXPECT_TRUE(state.guard.needsTicks());
    state.time += 6;
    state.guard.tick(state);
    EXPECT_TRUE(state.appIsUp);
    state.time += 1;
    state.guard.tick(state);
    EXPECT_FALSE(state.guard.needsTicks());

    // A lock that was handed off belongs to the locker first, also for a guard that has just
    // started.
    for (const bool starts : {false, true}) {
        State left;
        left.closes = left.handedOff = true;
        left.appIsUp = false;
        starts ? left.guard.started(left) : left.guard.appExited(left);
        EXPECT_TRUE(left.wasAsked);
        EXPECT_FALSE(left.appIsUp) << "it would shut the locker out";
        left.time += OrvelCore::GuardPolicy::lockerPatience;
        left.guard.tick(left);
        EXPECT_TRUE(left.appIsUp) << "a locker that did not come leaves no screen without a card";
    }
}

}  // namespace
