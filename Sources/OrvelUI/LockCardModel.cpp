#include "OrvelUI/LockCardModel.h"

#include <algorithm>
#include <utility>

#include "OrvelCore/Match.h"
#include "OrvelUI/LockCardFormat.h"

namespace OrvelUI {

using OrvelSystem::Password;

LockCardModel::LockCardModel(std::string name, std::shared_ptr<const OrvelSystem::Picture> portrait,
                             bool hasTouchID)
    : fullName(std::move(name)), picture(std::move(portrait)), touchIDAvailable(hasTouchID) {
    statusObservation_ = status.observe([this](const Status& stored) { onStatusChange(stored); });
}

std::string LockCardModel::caption() const {
    const bool touchID = touchIDAvailable.get();
    return OrvelCore::match(
        status.get(),
        [&](const Cooldown&) {
            return touchID ? "Too many attempts. Use Touch ID."
                           : "Too many attempts. Wait a moment.";
        },
        [&](const Ready&) { return touchID ? "Touch ID or password" : "Enter your password"; },
        [](const Verifying&) { return "Checking your password"; },
        [](const WrongPassword&) { return "Incorrect password"; },
        [](const PasswordsPaused&) { return "Passwords paused. Use Touch ID."; },
        [](const Unavailable&) { return "Couldn't check. Try again."; });
}

std::string LockCardModel::placeholder() const {
    if (const auto countdown = countdownText()) return "Wait " + *countdown;
    if (std::holds_alternative<PasswordsPaused>(status.get())) return "Passwords are paused";
    return "Enter password";
}

bool LockCardModel::canType() const {
    const bool takesTyping = OrvelCore::match(
        status.get(), [](const Cooldown&) { return false; }, [](const Ready&) { return true; },
        [](const Verifying&) { return false; }, [](const WrongPassword&) { return true; },
        [](const PasswordsPaused&) { return false; }, [](const Unavailable&) { return true; });
    return takesTyping && hasKeyboard.get();
}

std::string LockCardModel::initials() const {
    return LockCardFormat::initials(fullName.get());
}

std::string LockCardModel::timeText() const {
    return LockCardFormat::time(now.get(), locale.get(), timeZone.get());
}

std::string LockCardModel::dateText() const {
    return LockCardFormat::date(now.get(), locale.get(), timeZone.get());
}

std::optional<double> LockCardModel::cooldownRemaining() const {
    const auto* cooldown = std::get_if<Cooldown>(&status.get());
    if (cooldown == nullptr) return {};
    return std::max(0.0, OrvelCore::secondsBetween(now.get(), cooldown->until));
}

std::optional<std::string> LockCardModel::countdownText() const {
    const auto remaining = cooldownRemaining();
    if (!remaining) return {};
    return LockCardFormat::countdown(*remaining);
}

double LockCardModel::cooldownFraction() const {
    const auto remaining = cooldownRemaining();
    const double total = cooldownTotal.get();
    if (!remaining || !(total > 0)) return 0;
    return std::min(1.0, *remaining / total);
}

void LockCardModel::type(std::string_view utf8) {
    if (!canType()) return;
    Password typed = password.get().clone();
    if (typed.append(utf8)) password.set(std::move(typed));
}

void LockCardModel::deleteBackward() {
    if (!canType()) return;
    Password typed = password.get().clone();
    typed.removeLastCharacter();
    password.set(std::move(typed));
}

void LockCardModel::deleteAll() {
    if (canType()) password.set({});
}

void LockCardModel::submit() {
    if (!canType() || password.get().empty()) return;
    Password typed = password.get().clone();
    password.set({});
    onSubmit(std::move(typed));
}

void LockCardModel::registerFailure() {
    status.set(WrongPassword{});
    shakeCount.set(shakeCount.get() + 1);
}

void LockCardModel::reset() {
    status.set(Ready{});
    password.set({});
    biometricContext.set(nullptr);
}

}  // namespace OrvelUI
