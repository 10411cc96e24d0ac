#include "OrvelUI/LockFeedback.h"
#include "OrvelUITests/Cards.h"

using Effects = std::vector<LockFeedback::Effect>;

namespace {

LockFeedback::Effect say(const std::string& text) {
    return LockFeedback::Announce{text};
}

Effects silent(const Effects& effects) {
    Effects result;
    for (const auto& effect : effects)
        if (!std::holds_alternative<LockSound>(effect)) result.push_back(effect);
    return result;
}

}  // namespace

TEST(LockFeedback, EachEventHasItsEffectsInOrder) {
    struct Row {
        LockFeedback::Event event;
        Effects effects;
    };
    const auto status = [](LockCardModel::Status value) {
        return LockFeedback::Event(LockFeedback::StatusChanged{value});
    };
    const Row rows[] = {
        {LockFeedback::Locked{true},
         {say("Screen locked by Karvo. Use Touch ID, or type your Mac password."),
          LockSound::lock}},
        {LockFeedback::Locked{false},
         {say("Screen locked by Karvo. Type your Mac password."), LockSound::lock}},
        {LockFeedback::Unlocked{}, {LockSound::unlock}},
        {LockFeedback::TouchIDAccepted{}, {Haptic::success}},
        {status(cooldownFor(90)),
         {say("Too many attempts. Try again in 1 minute and 30 seconds.")}},
        {status(cooldownFor(-100)), {say("Too many attempts. Try again in 1 second.")}},
        {status(cooldownFor(1.2)), {say("Too many attempts. Try again in 2 seconds.")}},
        {status(cooldownFor(59.5)), {say("Too many attempts. Try again in 1 minute.")}},
        {status(cooldownFor(301)),
         {say("Too many attempts. Try again in 5 minutes and 1 second.")}},
        {status(LockCardModel::Ready{}), {}},
        {status(LockCardModel::Verifying{}), {}},
        {status(LockCardModel::WrongPassword{}),
         {LockSound::failure, say("Incorrect password."), Haptic::failure}},
        {status(LockCardModel::PasswordsPaused{}), {say("Passwords are paused. Use Touch ID.")}},
        {status(LockCardModel::Unavailable{}), {say("Couldn't check your password. Try again.")}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(LockFeedback::effects(row.event, true, true, cardTime), row.effects);
        for (const auto& [on, interfaceOn] :
             {std::pair{true, false}, {false, true}, {false, false}})
            EXPECT_EQ(LockFeedback::effects(row.event, on, interfaceOn, cardTime),
                      silent(row.effects));
    }
}
