#include "OrvelCore/SleepLock.h"

using enum SleepLock::Event;

TEST(SleepLock, DelaysTheSleepUntilTheScreenIsHiddenAndLeavesItToAnotherLocker) {
    const SleepLock::Situation alone;
    const SleepLock::Situation off{.isOn = false};
    const SleepLock::Situation beside{.lockerIsKnown = true};
    const SleepLock::Situation unable{.mayLock = false};
    struct Step {
        SleepLock::Event event;
        SleepLock::Situation situation;
        /// D: delay the sleep, A: allow it, L: lock.
        std::string effects;
    };
    const std::vector<Step> sequences[] = {
        {{settingsChanged, alone, "D"},
         {screenHidden, alone, ""},
         {sleepStarts, alone, "L"},
         {sleepStarts, alone, ""},
         {settingsChanged, alone, ""},
         {screenHidden, alone, "A"},
         {delayEnded, alone, ""},
         {woke, alone, "D"}},
        {{sleepStarts, alone, "L"}, {delayEnded, alone, "A"}, {screenHidden, alone, ""}},
        // The machine may wake before the screen is hidden.
        {{sleepStarts, alone, "L"}, {woke, alone, "D"}, {screenHidden, alone, ""}},
        {{settingsChanged, off, "A"}, {sleepStarts, off, "A"}, {woke, off, "A"}},
        {{settingsChanged, unable, "A"}, {sleepStarts, unable, "A"}, {lockRequested, unable, ""}},
        // Another locker starts or ends between two sleeps.
        {{settingsChanged, alone, "D"}, {sleepStarts, beside, "A"}, {woke, beside, "A"}},
        {{settingsChanged, beside, "A"}, {sleepStarts, alone, "L"}, {screenHidden, alone, "A"}},
        {{lockRequested, alone, "L"}, {lockRequested, off, "L"}, {lockRequested, beside, ""}},
    };
    for (const auto& sequence : sequences) {
        SleepLock rules;
        for (std::size_t i = 0; i < sequence.size(); ++i) {
            std::string effects;
            for (const auto effect : rules.handle(sequence[i].event, sequence[i].situation))
                effects += "DAL"[static_cast<int>(effect)];
            EXPECT_EQ(effects, sequence[i].effects)
                << "step " << i << " of sequence " << &sequence - sequences;
        }
    }
}
