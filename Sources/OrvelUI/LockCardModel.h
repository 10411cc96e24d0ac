#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "OrvelCore/Date.h"
#include "OrvelCore/Observed.h"
#include "OrvelCore/Shortcut.h"
#include "OrvelCore/Text.h"
#include "OrvelSystem/BiometricContext.h"
#include "OrvelSystem/Password.h"
#include "OrvelSystem/Picture.h"

namespace OrvelUI {

/// What the lock card of the whole-Mac lock, or the unlock badge of one locked app, shows.
/// Its owner writes the fields, views observe them field by field, and typed passwords come back
/// through `onSubmit`. Outlives every view of it. Main thread only.
class LockCardModel {
  public:
    struct Cooldown {
        OrvelCore::Date until;
        bool operator==(const Cooldown&) const = default;
    };
    struct Ready {
        bool operator==(const Ready&) const = default;
    };
    struct Verifying {
        bool operator==(const Verifying&) const = default;
    };
    struct WrongPassword {
        bool operator==(const WrongPassword&) const = default;
    };
    struct PasswordsPaused {
        bool operator==(const PasswordsPaused&) const = default;
    };
    struct Unavailable {
        bool operator==(const Unavailable&) const = default;
    };
    using Status =
        std::variant<Cooldown, Ready, Verifying, WrongPassword, PasswordsPaused, Unavailable>;

    LockCardModel(std::string fullName, std::shared_ptr<const OrvelSystem::Picture> picture,
                  bool touchIDAvailable);
    LockCardModel(const LockCardModel&) = delete;
    LockCardModel& operator=(const LockCardModel&) = delete;

    template <class T>
    using Observed = OrvelCore::Observed<T>;

    Observed<Status> status{Ready{}};
    /// Called once after each write of `status` that changes it, before the views hear of it.
    std::function<void(const Status&)> onStatusChange = [](const Status&) {};
    /// The card's clock; its owner writes it once per tick.
    Observed<OrvelCore::Date> now{OrvelCore::Date(std::chrono::system_clock::now())};
    /// What is typed so far.
    Observed<OrvelSystem::Password> password;
    /// Whether the window that shows the card has the keyboard.
    Observed<bool> hasKeyboard{true};
    /// The view shakes the card on each increase.
    Observed<double> shakeCount{0};
    Observed<std::string> fullName;
    /// Of the account, or the icon of the locked app; null when there is none.
    Observed<std::shared_ptr<const OrvelSystem::Picture>> picture;
    /// The owner's note. Absent and empty mean the same: there is none.
    Observed<std::optional<std::string>> awayMessage;
    Observed<bool> showsClock{true};
    Observed<std::optional<OrvelCore::Shortcut>> unlockShortcut;
    /// The running fingerprint prompt; null when there is none.
    Observed<std::shared_ptr<OrvelSystem::BiometricContext>> biometricContext;
    Observed<bool> touchIDAvailable;
    /// Seconds; the length of the current cooldown, of which the ring shows the rest.
    Observed<double> cooldownTotal{60.0};
    Observed<OrvelCore::Locale> locale{OrvelCore::currentLocale()};
    Observed<OrvelCore::TimeZone> timeZone{OrvelCore::currentTimeZone()};
    /// True for a card that is drawn as a still picture in Settings.
    Observed<bool> staticPreview{false};
    std::function<void(OrvelSystem::Password)> onSubmit = [](OrvelSystem::Password) {};

    std::string caption() const;
    std::string placeholder() const;
    /// Whether the status takes typing and the card has the keyboard.
    bool canType() const;
    std::string initials() const;
    std::string timeText() const;
    std::string dateText() const;
    /// Seconds, never below 0; absent unless the status is `Cooldown`.
    std::optional<double> cooldownRemaining() const;
    std::optional<std::string> countdownText() const;
    /// What is left of the cooldown, 0 to 1; 0 when there is none.
    double cooldownFraction() const;

    /// Adds typed text to the password. Nothing while `canType` is false, and nothing of a text
    /// that no longer fits.
    void type(std::string_view utf8);
    /// Takes the last user-perceived character away. Nothing while `canType` is false.
    void deleteBackward();
    /// Empties the field. Nothing while `canType` is false.
    void deleteAll();
    /// Hands the password to `onSubmit`, and leaves the field empty before it does. Nothing while
    /// `canType` is false or the field is empty.
    void submit();
    /// Shows a wrong password, and shakes even when one was shown already.
    void registerFailure();
    /// Back to a ready, empty card without a fingerprint prompt.
    void reset();

  private:
    OrvelCore::Observation statusObservation_;
};

}  // namespace OrvelUI
