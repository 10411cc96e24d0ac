#include "OrvelUI/Form.h"

#include <fmt/format.h>

namespace OrvelUI {

std::string IntensitySlider::spokenValue(int value, std::optional<int> tick) {
    if (!tick) return fmt::format("{}", value);
    return fmt::format(value >= *tick ? fmt::runtime("{}, unreadable")
                                      : fmt::runtime("{}, large text may be readable"),
                       value);
}

}  // namespace OrvelUI
