#include "OrvelUITests/Cards.h"

namespace {

std::string typed(const LockCardModel& model) {
    return std::string(model.password.get().view());
}

}  // namespace

TEST(LockCardModel, StatusDecidesTextsAndTyping) {
    struct Row {
        LockCardModel::Status status;
        std::string withTouchID, without, placeholder;
        bool canType;
    };
    const Row rows[] = {
        {cooldownFor(59.2), "Too many attempts. Use Touch ID.", "Too many attempts. Wait a moment.",
         "Wait 1:00", false},
        {LockCardModel::Ready{}, "Touch ID or password", "Enter your password", "Enter password",
         true},
        {LockCardModel::Verifying{}, "Checking your password", "Checking your password",
         "Enter password", false},
        {LockCardModel::WrongPassword{}, "Incorrect password", "Incorrect password",
         "Enter password", true},
        {LockCardModel::PasswordsPaused{}, "Passwords paused. Use Touch ID.",
         "Passwords paused. Use Touch ID.", "Passwords are paused", false},
        {LockCardModel::Unavailable{}, "Couldn't check. Try again.", "Couldn't check. Try again.",
         "Enter password", true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.withTouchID);
        Card card;
        card.model.status.set(row.status);
        EXPECT_EQ(card.model.caption(), row.withTouchID);
        EXPECT_EQ(card.model.placeholder(), row.placeholder);
        EXPECT_EQ(card.model.canType(), row.canType);
        card.model.touchIDAvailable.set(false);
        EXPECT_EQ(card.model.caption(), row.without);
        card.model.hasKeyboard.set(false);
        EXPECT_FALSE(card.model.canType());
    }
}

TEST(LockCardModel, ChangeOfStatusIsToldOnceAndBeforeTheViews) {
    Card card;
    std::vector<std::string> calls;
    const auto observation =
        card.model.status.observe([&](const auto&) { calls.push_back("view"); });
    card.model.onStatusChange = [&](const LockCardModel::Status& status) {
        EXPECT_EQ(status, card.model.status.get());
        calls.push_back("owner");
    };
    card.model.status.set(LockCardModel::Ready{});
    EXPECT_THAT(calls, IsEmpty());
    card.model.registerFailure();
    card.model.registerFailure();
    EXPECT_THAT(calls, ElementsAre("owner", "view"));
    EXPECT_EQ(card.model.shakeCount.get(), 2);
    card.model.status.set(cooldownFor(5));
    card.model.status.set(cooldownFor(6));
    EXPECT_EQ(calls.size(), 6U);
}

TEST(LockCardModel, NothingIsTypedOrSubmittedWhileTypingIsNotPossible) {
    for (const auto& status : everyStatus()) {
        Card card;
        card.model.type("secret");
        card.model.status.set(status);
        if (card.model.canType()) card.model.hasKeyboard.set(false);
        card.model.type("more");
        card.model.deleteBackward();
        card.model.deleteAll();
        card.model.submit();
        EXPECT_EQ(typed(card.model), "secret") << status.index();
        EXPECT_THAT(card.submitted, IsEmpty()) << status.index();
    }
}

TEST(LockCardModel, CooldownCountsDownAndStaysWithinItsBounds) {
    struct Row {
        double total, remaining, fraction;
        std::string text;
    };
    for (const auto& row :
         {Row{60, 15, 0.25, "0:15"}, Row{60, 0.2, 0.2 / 60, "0:01"}, Row{60, 90, 1, "1:30"},
          Row{60, -5, 0, "0:00"}, Row{0, 5, 0, "0:05"}, Row{-1, 5, 0, "0:05"}}) {
        Card card;
        card.model.cooldownTotal.set(row.total);
        card.model.status.set(cooldownFor(row.remaining));
        EXPECT_NEAR(card.model.cooldownFraction(), row.fraction, 1e-6);
        EXPECT_EQ(card.model.countdownText(), row.text);
        EXPECT_GE(*card.model.cooldownRemaining(), 0);
    }
    Card card;
    EXPECT_EQ(card.model.cooldownRemaining(), std::nullopt);
    EXPECT_EQ(card.model.countdownText(), std::nullopt);
    EXPECT_EQ(card.model.cooldownFraction(), 0);
}
