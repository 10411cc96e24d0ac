#include "OrvelUI/Form.h"

#include <fmt/format.h>

namespace OrvelUI {

std::string IntensitySlider::spokenValue(int value, std::optional<int> tick) {
    if (!tick) return fmt::format("{}", value);
    return fmt::format(value >= *tick ? fmt::runtime("{}, unreadable")
                                      : fmt::runtime("{}, large text may be readable"),
                       value);
}

OrvelCore::Rect CornerPicker::place(OrvelCore::TriggerSettings::Corner corner) {
    using Corner = OrvelCore::TriggerSettings::Corner;
    constexpr double inset = 4;
    const bool isLeft = corner == Corner::topLeft || corner == Corner::bottomLeft;
    const bool isTop = corner == Corner::topLeft || corner == Corner::topRight;
    return {isLeft ? inset : display.width - inset - targetSide,
            isTop ? inset : display.height - inset - targetSide, targetSide, targetSide};
}

}  // namespace OrvelUI
