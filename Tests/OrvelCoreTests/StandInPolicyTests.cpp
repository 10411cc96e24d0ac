#include <vector>

#include <gtest/gtest.h>

#include "OrvelCore/StandInPolicy.h"

namespace {

using OrvelCore::StandInAction;
using OrvelCore::StandInPolicy;
using enum StandInAction;

struct Step {
    StandInPolicy::Situation situation;
    StandInAction expected;
};

TEST(StandInPolicy, HidesWhatItMustAndNeverForGood) {
    const struct {
        const char* name;
        std::vector<Step> steps;
    } cases[] = {
        {"the system's lock comes and goes",
         {{{.now = 0, .marked = true}, keep},
          {{.now = 3, .marked = true, .systemIsLocked = true}, keep},
          {{.now = 9000, .marked = true, .systemIsLocked = true}, keep},
          {{.now = 9001, .marked = true}, withdraw}}},
        {"no marker and no lock",
         {{{.now = 10}, keep}, {{.now = 14.9}, keep}, {{.now = 15}, withdraw}}},
        {"no marker but a lock",
         {{{.now = 10}, keep},
          {{.now = 14, .systemIsLocked = true}, keep},
          {{.now = 100, .systemIsLocked = true}, keep},
          {{.now = 101}, withdraw}}},
        {"the owner asks, and once more when that app dies too",
         {{{.now = 0, .marked = true}, keep},
          {{.now = 1, .marked = true, .asked = true}, relaunch},
          {{.now = 2, .marked = true, .appRuns = true, .asked = true}, keep},
          {{.now = 3, .marked = true, .asked = true}, relaunch}}},
        {"nobody is there",
         {{{.now = 0, .marked = true}, keep},
          {{.now = 599, .marked = true}, keep},
          {{.now = 600, .marked = true}, relaunch},
          {{.now = 601, .marked = true}, keep},
          {{.now = 629, .marked = true, .asked = true}, relaunch},
          {{.now = 630, .marked = true}, withdraw}}},
        {"an app that runs and does not take over",
         {{{.now = 0, .marked = true, .appRuns = true}, keep},
          {{.now = 629, .marked = true, .appRuns = true}, keep},
          {{.now = 630, .marked = true, .appRuns = true}, withdraw}}},
    };
    for (const auto& [name, steps] : cases) {
        StandInPolicy policy;
        for (const auto& [situation, expected] : steps)
            EXPECT_EQ(policy.next(situation), expected) << name << " at " << situation.now;
    }
}

}  // namespace
