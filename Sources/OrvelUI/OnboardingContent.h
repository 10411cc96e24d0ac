#pragma once

#include <optional>

#include "OrvelUI/Controls.h"
#include "OrvelUI/Form.h"
#include "OrvelUI/OnboardingModel.h"

namespace OrvelUI {

/// One step of the first-run guide: what it says, and the footer that leads on.
struct OnboardingContent {
    FormContent form;
    PageDots dots;
    std::optional<FormButton> back;
    std::optional<FormButton> secondary;
    FormButton primary;

    /// The model outlives the content.
    static OnboardingContent of(OnboardingModel& model);
    bool operator==(const OnboardingContent&) const = default;
};

}  // namespace OrvelUI
