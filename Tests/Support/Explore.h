#pragma once

#include "Support/Prelude.h"

/// What an exploration has seen.
struct Explored {
    std::size_t states = 0;
    std::size_t steps = 0;
    /// Steps from the start to the states that are furthest.
    int depth = 0;
    /// Nothing was left to visit.
    bool isWhole = false;

    Explored& operator+=(const Explored& other) {
        states += other.states;
        steps += other.steps;
        depth = std::max(depth, other.depth);
        isWhole = isWhole && other.isWhole;
        return *this;
    }
    void print(std::string_view name) const {
        std::cout << name << ": " << states << " states, " << steps << " steps, depth " << depth
                  << (isWhole ? ", whole\n" : "\n");
    }
};

/// Visits, breadth first, every state that `mostSteps` steps or fewer lead to. `next(state, visit)`
/// calls `visit` with each state that can follow. States with the same `key()` are one state. Ends
/// early once a test has failed, with the shortest way to the failure.
template <class State, class Next>
Explored explore(State start, int mostSteps, Next next) {
    Explored result;
    std::set seen = {start.key()};
    std::vector<State> edge;
    edge.push_back(std::move(start));
    for (; !edge.empty() && result.depth < mostSteps; ++result.depth) {
        std::vector<State> reached;
        for (const State& state : edge) {
            if (testing::Test::HasFailure()) break;
            next(state, [&](State following) {
                ++result.steps;
                if (seen.insert(following.key()).second) reached.push_back(std::move(following));
            });
        }
        edge = std::move(reached);
    }
    result.states = seen.size();
    result.isWhole = edge.empty() && !testing::Test::HasFailure();
    return result;
}
