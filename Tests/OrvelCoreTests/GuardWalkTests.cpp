#include <array>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <fmt/core.h>
#include <gtest/gtest.h>

#include "OrvelCore/GuardPolicy.h"
#include "OrvelCore/StandInPolicy.h"

#include "Support/Explore.h"

// Walks what becomes of a lock while the app, the guard and the system's own lock come and go in
// any order, as far as the guard's rules decide it.

using namespace OrvelCore;

namespace {

constexpr double lastMoment = 1300;
constexpr double never = -1e9;

struct State {
    double now = 0;
    bool isMarked = true;
    bool appRuns = true;
    bool guardRuns = true;
    // The guard's own.
    std::optional<double> lastRelaunch;
    bool standsIn = false;
    StandInPolicy standIn;
    // Of the system.
    bool wasAsked = false;  // for its lock, since the app was last there
    bool isLocked = false;
    /// The last two times that this guard started the app with nobody asking for it.
    std::array<double, 2> unasked{never, never};

    auto key() const {
        return std::tuple(now, isMarked, appRuns, guardRuns, lastRelaunch, standsIn, standIn,
                          wasAsked, isLocked, unasked);
    }
    std::string description() const {
        return fmt::format("at {}: marked {}, app {}, guard {}, stands in {}, asked {}, locked {}",
                           now, isMarked, appRuns, guardRuns, standsIn, wasAsked, isLocked);
    }
};

const LockMarker marker{.bootSession = "boot"};

std::optional<LockMarker> markerOf(const State& state) {
    return state.isMarked ? std::optional(marker) : std::nullopt;
}

/// `starts` tells whether a start of the app succeeds.
void relaunch(State& state, bool starts, bool isAsked) {
    if (!isAsked) {
        // One is the guard's, one the stand-in's, which had better not be the last there is.
        EXPECT_TRUE(state.now - state.unasked[0] >= GuardPolicy::relaunchCooldown)
            << "relaunched again and again: " << state.description();
        state.unasked = {state.unasked[1], state.now};
    }
    state.appRuns = starts;
}

void perform(State& state, GuardAction action, bool starts) {
    if (action == GuardAction::engageMacOSLockAndRelaunch) state.lastRelaunch = state.now;
    GuardResponder{.engageLock = [&] { state.wasAsked = true; },
                   .relaunch =
                       [&] {
                           EXPECT_TRUE(state.wasAsked) << "open while the app starts";
                           relaunch(state, starts, false);
                       }}
        .perform(action);
    EXPECT_TRUE(!state.isMarked || state.wasAsked || state.appRuns)
        << "given up: " << state.description();
}

void exited(State& state, bool starts) {
    const auto action =
        GuardPolicy::onOrvelExit(markerOf(state), "boot", state.lastRelaunch, state.now);
    perform(state, action, starts);
    // What was started is gone already.
    if (action == GuardAction::engageMacOSLockAndRelaunch && !starts)
        perform(state,
                GuardPolicy::onOrvelExit(markerOf(state), "boot", state.lastRelaunch, state.now),
                starts);
}

void tend(State& state, bool isAsked, bool starts) {
    if (!state.standsIn || !state.guardRuns) return;
    const auto action = state.standIn.next({.now = state.now,
                                            .marked = state.isMarked,
                                            .appRuns = state.appRuns,
                                            .systemIsLocked = state.isLocked,
                                            .asked = isAsked});
    if (action == StandInAction::relaunch) relaunch(state, starts, isAsked);
    if (action != StandInAction::withdraw) return;
    EXPECT_FALSE(state.isLocked);
    state.standsIn = false;
    state.standIn.reset();
}

/// Everything that can happen next.
void follow(const State& state, const auto& visit) {
    const auto when = [&](bool isPossible, const auto& change) {
        if (!isPossible) return;
        State after = state;
        change(after);
        visit(after);
    };
    for (const double seconds : {5.0, 30.0, 300.0}) {
        for (const bool starts : {false, true}) {
            when(state.now + seconds <= lastMoment, [&](State& s) {
                s.now += seconds;
                tend(s, false, starts);
            });
        }
    }
    for (const bool starts : {false, true}) {
        when(state.appRuns, [&](State& s) {
            s.appRuns = s.wasAsked = false;
            if (!s.guardRuns) return;
            s.standsIn = s.standsIn || s.isMarked;
            exited(s, starts);
        });
        when(!state.guardRuns, [&](State& s) {
            s.guardRuns = true;
            perform(s, GuardPolicy::onGuardStart(markerOf(s), "boot", s.appRuns), starts);
        });
        when(state.standsIn, [&](State& s) { tend(s, true, starts); });
    }
    when(state.guardRuns, [](State& s) {
        s.guardRuns = s.standsIn = false;
        s.standIn.reset();
        s.lastRelaunch.reset();
        s.unasked = {never, never};
    });
    // The app covers, and takes over what stands in for it.
    when(state.appRuns && state.standsIn, [](State& s) {
        s.standsIn = false;
        s.standIn.reset();
    });
    when(state.appRuns && !state.standsIn, [](State& s) { s.isMarked = !s.isMarked; });
    when(state.wasAsked && !state.isLocked, [](State& s) { s.isLocked = true; });
    when(state.isLocked, [](State& s) { s.isLocked = s.wasAsked = false; });
}

/// Nothing stands in for ever: neither for an owner who asks nor for one who only waits.
void checkWaysOut(const State& state) {
    for (const bool asks : {false, true}) {
        State later = state;
        later.isLocked = false;
        later.unasked = {never, never};
        if (asks) {
            tend(later, true, true);
            EXPECT_TRUE(later.appRuns || !later.standsIn) << state.description();
        }
        for (int i = 0; i <= 140; ++i, later.now += 5) tend(later, false, false);
        EXPECT_FALSE(later.standsIn) << "the owner is shut out " << state.description();
    }
}

TEST(GuardWalk, NeverLeavesALockToItself) {
    constexpr int depth = 9;
    const auto all = explore(State(), depth, [](const State& state, const auto& visit) {
        follow(state, visit);
        if (state.guardRuns && state.standsIn) checkWaysOut(state);
    });
    all.print("Guard");
    EXPECT_GT(all.states, 5000U) << "the walk is no walk";
}

}  // namespace
