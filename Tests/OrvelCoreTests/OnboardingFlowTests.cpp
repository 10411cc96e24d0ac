#include "OrvelCore/OnboardingFlow.h"

using Step = OnboardingStep;
using Trial = OnboardingFlow::Trial;

namespace {

struct Place {
    Step step;
    Trial trial;
    auto operator<=>(const Place&) const = default;
};

using Operation = void (*)(OnboardingFlow&);
constexpr std::pair<const char*, Operation> operations[] = {
    {"next", [](OnboardingFlow& flow) { flow.next(); }},
    {"back", [](OnboardingFlow& flow) { flow.back(); }},
    {"startTry", [](OnboardingFlow& flow) { flow.startTry(); }},
    {"tryDidNotStart", [](OnboardingFlow& flow) { flow.tryDidNotStart(); }},
    {"lockEnded", [](OnboardingFlow& flow) { flow.lockEnded(); }},
    {"skip", [](OnboardingFlow& flow) { flow.skipPrivateApps(); }},
};

}  // namespace

// Runs every operation from every reachable place, and checks the guide's invariants.
TEST(OnboardingFlow, KeepsItsPromisesWhereverTheUserIs) {
    std::map<Place, bool> seen{{{Step::welcome, Trial::idle}, true}};
    std::deque<Place> open{{Step::welcome, Trial::idle}};
    while (!open.empty()) {
        const Place from = open.front();
        open.pop_front();
        for (const auto& [name, operate] : operations) {
            OnboardingFlow flow{.step = from.step, .trial = from.trial, .chosenApps = {"a"}};
            operate(flow);
            const Place to{flow.step, flow.trial};
            SCOPED_TRACE(testing::Message() << name << " at " << static_cast<int>(from.step) << "/"
                                            << static_cast<int>(from.trial));
            const bool skips = std::string(name) == "skip";
            if (!skips) {
                EXPECT_LE(std::abs(static_cast<int>(to.step) - static_cast<int>(from.step)), 1);
                EXPECT_EQ(flow.chosenApps.size(), 1U);
            }
            EXPECT_TRUE(from.trial != Trial::locking || skips || to.step == from.step)
                << "the step changed during a lock";
            EXPECT_TRUE(to.trial != Trial::locking || from.trial == Trial::locking ||
                        from == (Place{Step::shortcuts, Trial::idle}));
            EXPECT_TRUE(from.trial != Trial::done || to.trial == Trial::done)
                << "a finished try is finished";
            EXPECT_TRUE(to.trial != Trial::done || from.trial != Trial::idle);
            EXPECT_EQ(flow.outcome({"a"}).has_value(), to.step == Step::finish);
            if (seen.emplace(to, true).second) open.push_back(to);
        }
    }
    EXPECT_EQ(seen.size(), 10U) << "all but a lock in the first step and the third";
}
