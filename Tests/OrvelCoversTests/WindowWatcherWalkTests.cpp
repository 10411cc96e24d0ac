#include "OrvelCovers/WindowWatcher.h"

#include "Support/Explore.h"

// Explores every interleaving of the watcher's checks, the receiver and the screen, without
// threads: anything that happens during a check happens within one of its reads.

namespace {

enum Happening { orderChanges, placeChanges, buttonChanges, receiverReads, receiverPublishes };
constexpr int happenings = 5;
enum Moment { never, atButton, beforeNumbers, afterNumbers, beforeBounds, afterBounds, atReport };
constexpr int moments = 7;

struct Step {
    bool isLook = false;
    Happening happening{};
    Moment moment = never;  // the point of the check at which `happening` also occurs
};

/// A screen with two windows, one of them covered, and the receiver.
struct Desk {
    WindowWatcher::Snapshot screen{{1, 2}, {{2, {0, 0, 9, 9}}}};
    bool button = false;
    // The receiver is notified of a change, then has read the screen, then has published it.
    bool isTold = false;
    std::optional<WindowWatcher::Snapshot> taken;
    std::optional<WindowWatcher::Snapshot> published;

    // A copy of the watcher's private state.
    bool due = false, reported = false, told = false, lastButton = false;
    bool inputsChanged = false;

    Step step;
    WindowWatcher watcher{{.numbers =
                               [this] {
                                   interrupt(beforeNumbers);
                                   const auto numbers = screen.numbers;
                                   interrupt(afterNumbers);
                                   return numbers;
                               },
                           .bounds =
                               [this](const auto&) {
                                   interrupt(beforeBounds);
                                   const auto bounds = screen.covered;
                                   interrupt(afterBounds);
                                   return bounds;
                               },
                           .button =
                               [this] {
                                   const bool isDown = button;
                                   interrupt(atButton);
                                   inputsChanged = isDown != lastButton;
                                   lastButton = isDown;
                                   return isDown;
                               },
                           .option = [] { return false; },
                           .observe = [](const auto&) { return Subscription(); }},
                          [this] {
                              EXPECT_TRUE(inputsChanged || !reported)
                                  << "a second report of one snapshot";
                              // The watcher marks the report before it notifies the receiver.
                              reported = true;
                              interrupt(atReport);
                              isTold = true;
                          }};

    void take(const Step& next) {
        step = next;
        if (!step.isLook) return happen(step.happening);
        due = false;
        watcher.lookIfDue();
    }
    void interrupt(Moment moment) {
        if (step.moment == moment) happen(step.happening);
    }
    void happen(Happening happening) {
        switch (happening) {
            case orderChanges:
                std::swap(screen.numbers[0], screen.numbers[1]);
                return tell();
            case placeChanges:
                screen.covered[2].x = 1 - screen.covered[2].x;
                return tell();
            case buttonChanges:
                button = !button;
                return tell();
            case receiverReads:
                isTold = false;
                taken = screen;
                return;
            case receiverPublishes:
                if (!taken) return;
                due = due || told;
                reported = told = false;
                published = *taken;
                watcher.publish(*std::exchange(taken, std::nullopt));
        }
    }
    void tell() {
        due = told = true;
        watcher.tell();
    }
    /// Stops all changes and lets every participant finish its work.
    void settle() {
        step = {};
        for (int round = 0; round < 4; ++round) {
            while (watcher.lookIfDue()) {
            }
            if (isTold) happen(receiverReads);
            happen(receiverPublishes);
        }
        EXPECT_FALSE(watcher.lookIfDue()) << "it never settles";
        EXPECT_TRUE(!published || *published == screen) << "a change was lost";
        EXPECT_EQ(lastButton, button) << "a press was lost";
    }
};

int code(const std::optional<WindowWatcher::Snapshot>& snapshot) {
    if (!snapshot) return -1;
    return static_cast<int>(snapshot->numbers[0]) * 2 + static_cast<int>(snapshot->covered.at(2).x);
}

struct State {
    std::vector<Step> way;
    std::tuple<int, int, int, bool, bool, bool, bool, bool, bool> known;

    const auto& key() const { return known; }
};

auto keyOf(const Desk& desk) {
    return std::tuple(code(desk.screen), code(desk.taken), code(desk.published), desk.button,
                      desk.isTold, desk.due, desk.reported, desk.told, desk.lastButton);
}

TEST(WindowWatcherWalk, LosesNoChangeInAnyOrderOfEvents) {
    std::vector<Step> steps{{.isLook = true}};
    for (int happening = 0; happening < happenings; ++happening) {
        steps.push_back({.happening = static_cast<Happening>(happening)});
        for (int moment = atButton; moment < moments; ++moment)
            steps.push_back({true, static_cast<Happening>(happening), static_cast<Moment>(moment)});
    }
    const auto arrive = [](Desk& desk, const State& state) {
        for (const auto& step : state.way) desk.take(step);
    };
    constexpr int unbounded = 1000;
    const auto all =
        explore(State{{}, keyOf(Desk())}, unbounded, [&](const State& state, const auto& visit) {
            for (const auto& step : steps) {
                Desk desk;
                arrive(desk, state);
                if (step.isLook && !desk.due) continue;
                desk.take(step);
                State next{state.way, keyOf(desk)};
                next.way.push_back(step);
                desk.settle();
                visit(std::move(next));
            }
        });
    all.print("WindowWatcher");
    EXPECT_TRUE(all.isWhole);
    EXPECT_GT(all.states, 500U) << "too few states were reached";
}

}  // namespace
