#pragma once

#include <optional>

#include "OrvelCore/Geometry.h"
#include "OrvelUI/Controls.h"
#include "OrvelUI/Form.h"
#include "OrvelUI/OnboardingModel.h"

namespace OrvelUI {

/// One step of the first-run guide: its content, and the buttons of its footer.
struct OnboardingContent {
    static constexpr OrvelCore::Size size{640, 480};  ///< Of the window's content, in points.

    FormContent form;
    PageDots dots;
    /// `back` and `secondary` are `nullopt` in steps without such a button.
    std::optional<FormButton> back;
    std::optional<FormButton> secondary;
    FormButton primary;

    /// The model must outlive the content.
    static OnboardingContent of(OnboardingModel& model);
    bool operator==(const OnboardingContent&) const = default;
};

}  // namespace OrvelUI
