#pragma once

#include <functional>
#include <vector>

#include "OrvelCore/Observed.h"
#include "OrvelUI/LockCardModel.h"

namespace OrvelUI {

/// Calls `refresh` after each change of a field that the card's contents depend on, until the
/// result is destroyed.
inline std::vector<OrvelCore::Subscription> observeCard(LockCardModel& model,
                                                        const std::function<void()>& refresh) {
    std::vector<OrvelCore::Subscription> observations;
    const auto observe = [&](auto& field) {
        observations.push_back(field.observe([refresh](const auto&) { refresh(); }));
    };
    observe(model.status);
    observe(model.now);
    observe(model.password);
    observe(model.hasKeyboard);
    observe(model.fullName);
    observe(model.picture);
    observe(model.awayMessage);
    observe(model.showsClock);
    observe(model.touchIDAvailable);
    observe(model.cooldownTotal);
    observe(model.locale);
    observe(model.timeZone);
    return observations;
}

}  // namespace OrvelUI
