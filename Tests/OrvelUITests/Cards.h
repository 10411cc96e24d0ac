#pragma once

#include "OrvelUI/LockCardModel.h"

/// 2025-11-21 14:05:09 in UTC, a Friday.
inline const Date cardTime = dateFromSecondsSince1970(1'763'733'909);

inline LockCardModel::Status cooldownFor(double seconds) {
    return LockCardModel::Cooldown{cardTime + Seconds(seconds)};
}

inline std::array<LockCardModel::Status, 6> everyStatus() {
    using Model = LockCardModel;
    return {cooldownFor(30),        Model::Ready{},           Model::Verifying{},
            Model::WrongPassword{}, Model::PasswordsPaused{}, Model::Unavailable{}};
}

/// A card with a fixed time, locale and time zone.
struct Card {
    explicit Card(bool touchID = true, std::string name = "Ada King Lovelace")
        : model(std::move(name), nullptr, touchID) {
        model.now.set(cardTime);
        model.locale.set({"en_GB"});
        model.timeZone.set({"UTC"});
        model.onSubmit = [this](Password password) {
            submitted.emplace_back(password.view());
            typedAtSubmit = std::string(model.password.get().view());
        };
    }

    LockCardModel model;
    std::vector<std::string> submitted;
    /// The content of the field when `onSubmit` was called.
    std::string typedAtSubmit;
};
