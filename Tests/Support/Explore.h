#pragma once

/// The result of an exploration.
struct Explored {
    std::size_t states = 0;
    std::size_t steps = 0;
    /// The number of steps from the start to the most distant states.
    int depth = 0;
    /// Whether all reachable states were visited.
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

/// Visits, breadth first, every state that is reachable in at most `mostSteps` steps. `next(state,
/// visit)` calls `visit` with each possible next state. States with the same `key()` count as one.
/// Stops at the first failure, which is therefore reached by the shortest path.
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
