#pragma once

#include <optional>

#include "OrvelUI/Controls.h"
#include "OrvelUI/Form.h"
#include "OrvelUI/OnboardingModel.h"

namespace OrvelUI {

/// One step of the first-run guide: its content, and the buttons of its footer.
struct OnboardingContent {
    FormContent form;
    PageDots dots;
    std::optional<FormButton> back;
    std::optional<FormButton> secondary;
    FormButton primary;

    /// The model must outlive the content.
    static OnboardingContent of(OnboardingModel& model);
    bool operator==(const OnboardingContent&) const = default;
};

}  // namespace OrvelUI
