#include "OrvelCore/AppLockRules.h"
#include "OrvelCore/AppUnlockMachine.h"

#include "Support/Explore.h"

using namespace AppUnlockPhases;
using Event = AppUnlockMachine::Event;
using enum AppUnlockMachine::Event;

namespace {

constexpr int eventCount = 7;

std::string text(const std::vector<AppUnlockMachine::Effect>& effects) {
    constexpr std::string_view names[] = {"verify",          "unlock",      "showVerifying",
                                          "showWrong",       "showPaused",  "showReady",
                                          "showUnavailable", "showCooldown"};
    std::string result;
    for (const auto& effect : effects) {
        result.append(result.empty() ? "" : " ").append(names[effect.index()]);
        if (const auto* cooldown = std::get_if<AppUnlockEffects::ShowCooldown>(&effect))
            result += fmt::format(" {}", cooldown->until);
    }
    return result;
}

struct State {
    AppUnlockMachine machine;
    double now = 0;
    // What an observer knows: no password may be checked before this time.
    double barredUntil = 0;

    auto key() const {
        const auto* cooling = std::get_if<Cooldown>(&machine.phase);
        return std::tuple(machine.phase.index(), cooling ? cooling->until : 0, machine.failures,
                          now, barredUntil);
    }
};

constexpr double forEver = 1e9;
const Backoff walked{2, {2, 3}, std::nullopt};

// The cool-down in seconds after failures, computed independently of the implementation.
double price(int failures, bool isLimited) {
    if (isLimited && failures >= 3) return forEver;
    return failures < 2 ? 0 : failures == 2 ? 2 : 3;
}

State step(const State& before, Event event, double now) {
    const AppUnlockMachine& old = before.machine;
    State after = before;
    after.now = now;
    const auto effects = text(after.machine.handle(event, now));
    const auto has = [&](const char* name) { return effects.find(name) != std::string::npos; };
    const auto promise = [&](bool isKept, const char* what) {
        EXPECT_TRUE(isKept) << what << ": event " << static_cast<int>(event) << " at " << now
                            << " in phase " << old.phase.index() << " gave " << effects;
    };
    const bool wasVerifying = std::holds_alternative<Verifying>(old.phase);
    const bool isRejection = wasVerifying && event == passwordRejected;
    if (isRejection)
        after.barredUntil = now + price(old.failures + 1, old.backoff.accountLimit.has_value());
    if (event == accountNearLimit && has("showPaused")) after.barredUntil = forEver;
    if (event == biometricAccepted) after.barredUntil = 0;

    promise(has("unlock") ==
                (event == biometricAccepted || (wasVerifying && event == passwordAccepted)),
            "a finger or the right password unlocks, and nothing else");
    promise(has("showWrong") == isRejection && after.machine.failures == old.failures + isRejection,
            "every rejection is counted and shown, and nothing else is taken for one");
    promise(!has("verify") || (event == passwordSubmitted && now >= before.barredUntil),
            "a password is checked when it is submitted, after its cool-down");
    promise(effects.empty() == (after.machine == old) || event == biometricAccepted,
            "every change is told, and nothing else");

    AppUnlockMachine later = after.machine;
    const double end = now + 1000;
    for (const auto next : {passwordUnavailable, clockTick, passwordSubmitted})
        later.handle(next, end);
    promise((text(later.handle(passwordAccepted, end)) == "unlock") == (after.barredUntil < end),
            "the right password gets in, once it is not barred");
    return after;
}

}  // namespace

TEST(AppLockRules, TheShortcutLocksOrAsksForUnlock) {
    using namespace AppLockActions;
    const std::optional<std::string> none;
    const FrontApp editor{1, "org.example.editor"};
    const struct {
        std::optional<FrontApp> front;
        std::optional<std::int64_t> badge;
        AppLockAction action;
    } table[] = {
        {editor, {}, Lock{1}},
        {editor, 9, Lock{1}},           // The badge's app is not locked.
        {editor, 2, RequestUnlock{2}},  // The badge takes precedence over the front app.
        {FrontApp{3, "x"}, 2, RequestUnlock{2}},
        {{}, 2, RequestUnlock{2}},
        {FrontApp{3, none}, {}, RequestUnlock{3}},
        {{}, {}, Ignore{}},
        {FrontApp{1, none}, {}, Ignore{}},
        {FrontApp{1, "com.apple.dock"}, {}, Ignore{}},
    };
    for (const auto& [front, badge, action] : table)
        EXPECT_EQ(AppLockRules::shortcut(front, badge, {2, 3}), action) << &front - &table[0].front;
    EXPECT_FALSE(AppLockRules::canLock(none));
    EXPECT_TRUE(AppLockRules::canLock("com.apple.spotlight")) << "identifiers are case sensitive";
}

TEST(AppUnlockMachine, AnswersEveryEventInEveryPhase) {
    const AppUnlockMachine::Phase phases[] = {Ready{}, Verifying{}, Cooldown{160},
                                              PasswordsPaused{}};
    const std::map<Event, std::array<std::string, 4>> table = {
        {passwordSubmitted, {"showVerifying verify"}},
        {passwordAccepted, {"", "unlock"}},
        {passwordRejected, {"", "showWrong showCooldown 220"}},
        {passwordUnavailable, {"", "showUnavailable"}},
        {biometricAccepted, {"unlock", "unlock", "unlock", "unlock"}},
        {clockTick, {"", "", "showReady", ""}},
        {accountNearLimit, {"showPaused", "showPaused"}},
    };
    for (const auto& [event, answers] : table) {
        for (std::size_t i = 0; i < answers.size(); ++i) {
            AppUnlockMachine machine({1, {60}, {}});
            machine.phase = phases[i];
            EXPECT_EQ(text(machine.handle(event, 160)), answers[i])
                << static_cast<int>(event) << " in " << i;
        }
    }
}

TEST(AppUnlockMachine, KeepsItsPromisesInEveryReachableState) {
    // Each event comes 0, 1 or 2 seconds after the previous one.
    constexpr int depth = 14;
    Explored all{.isWhole = true};
    for (const std::optional<int> limit : {std::optional<int>(), std::optional(5)}) {
        State start{AppUnlockMachine(walked)};
        start.machine.backoff.accountLimit = limit;
        all += explore(start, depth, [](const State& state, const auto& visit) {
            for (int choice = 0; choice < 3 * eventCount; ++choice)
                visit(step(state, static_cast<Event>(choice / 3), state.now + choice % 3));
        });
    }
    all.print("AppUnlockMachine");
    EXPECT_GT(all.states, 2000U) << "too few states were reached";
}
