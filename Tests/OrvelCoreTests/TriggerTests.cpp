#include "OrvelCore/IdlePolicy.h"

TEST(IdlePolicy, BlursLocksAndReveals) {
    const struct {
        double inputIdle;
        double timerIdle;
        bool keptAwake;
        bool blurred;
        bool locked;
        IdleAction action;
        IdleSettings settings = {60, 120};
    } table[] = {
        {59, 59, false, false, false, IdleAction::none},
        {60, 60, false, false, false, IdleAction::blur},
        {60, 60, false, true, false, IdleAction::none},
        {120, 120, false, true, false, IdleAction::lock},
        {60, 60, false, false, false, IdleAction::lock, {60, 60}},
        {1e9, 1e9, false, false, false, IdleAction::none, {}},
        // Input ends the blur in every case.
        {1.49, 1.49, false, true, false, IdleAction::reveal},
        {1.49, 1.49, true, true, true, IdleAction::reveal},
        {1.49, 500, false, true, false, IdleAction::reveal},
        {1.5, 1.5, false, true, false, IdleAction::none},
        {1, 1, false, false, false, IdleAction::none},
        // Nothing starts while something keeps the display awake or the Mac is locked.
        {500, 500, true, false, false, IdleAction::none},
        {500, 500, false, false, true, IdleAction::none},
        {500, 30, false, false, false, IdleAction::none},
    };
    for (const auto& row : table) {
        EXPECT_EQ(IdlePolicy::action(row.inputIdle, row.timerIdle, row.keptAwake, row.settings,
                                     row.blurred, row.locked),
                  row.action)
            << "row " << &row - table;
    }
    EXPECT_EQ(IdlePolicy::action(60, false, {60, {}}, false, false), IdleAction::blur);
}
