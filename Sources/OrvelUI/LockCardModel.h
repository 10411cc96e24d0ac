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

/// What the card of the screen lock, or the unlock badge of one locked app, shows. The owner writes
/// the fields, and views observe them one by one. `onSubmit` gets the typed password. Must outlive
/// its views. Main thread only.
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
    /// Called once after each write that changes `status`, before the views are notified.
    std::function<void(const Status&)> onStatusChange = [](const Status&) {};
    /// The card's clock, which the owner sets once per tick.
    Observed<OrvelCore::Date> now{OrvelCore::Date(std::chrono::system_clock::now())};
    /// The text typed so far.
    Observed<OrvelSystem::Password> password;
    /// Whether the window with the card has the keyboard.
    Observed<bool> hasKeyboard{true};
    /// Each increase makes the view shake the card.
    Observed<double> shakeCount{0};
    Observed<std::string> fullName;
    /// The picture of the account, or the icon of the locked app; null without one.
    Observed<std::shared_ptr<const OrvelSystem::Picture>> picture;
    /// The owner's note. `nullopt` and an empty text both mean that there is none.
    Observed<std::optional<std::string>> awayMessage;
    Observed<bool> showsClock{true};
    /// The shortcut that asks to unlock the app; `nullopt` for none.
    Observed<std::optional<OrvelCore::Shortcut>> unlockShortcut;
    /// The current fingerprint prompt; null without one.
    Observed<std::shared_ptr<OrvelSystem::BiometricContext>> biometricContext;
    Observed<bool> touchIDAvailable;
    /// The length of the current cool-down in seconds, of which the ring shows the remaining part.
    Observed<double> cooldownTotal{60.0};
    Observed<OrvelCore::Locale> locale{OrvelCore::currentLocale()};
    Observed<OrvelCore::TimeZone> timeZone{OrvelCore::currentTimeZone()};
    /// True for a card that is drawn as a still picture in Settings.
    Observed<bool> staticPreview{false};
    std::function<void(OrvelSystem::Password)> onSubmit = [](OrvelSystem::Password) {};

    std::string caption() const;
    std::string placeholder() const;
    /// Whether the status allows typing and the card has the keyboard.
    bool canType() const;
    std::string initials() const;
    std::string timeText() const;
    std::string dateText() const;
    /// In seconds, never negative; `nullopt` unless the status is `Cooldown`.
    std::optional<double> cooldownRemaining() const;
    /// As `LockCardFormat::countdown`; `nullopt` unless the status is `Cooldown`.
    std::optional<std::string> countdownText() const;
    /// The remaining part of the cool-down, 0 to 1; 0 when there is none.
    double cooldownFraction() const;

    /// Adds typed text to the password. Does nothing while `canType` is false, or if the whole text
    /// does not fit.
    void type(std::string_view utf8);
    /// Removes the last user-perceived character. Does nothing while `canType` is false.
    void deleteBackward();
    /// Empties the field. Does nothing while `canType` is false.
    void deleteAll();
    /// Empties the field, then passes the password to `onSubmit`. Does nothing while `canType` is
    /// false or the field is empty.
    void submit();
    /// Shows that the password was wrong, and shakes the card even if that is already shown.
    void registerFailure();
    /// Resets the card to ready and empty, without a fingerprint prompt.
    void reset();

  private:
    OrvelCore::Subscription statusObservation_;
};

}  // namespace OrvelUI
