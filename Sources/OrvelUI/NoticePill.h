#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "OrvelUI/CardContent.h"
#include "OrvelUI/Controls.h"
#include "OrvelUI/NotchMetrics.h"

namespace OrvelUI {

/// A short notice in a pill that hangs from the top of a display, under the notch if there is one.
/// One element for those who hear the interface.
struct NoticePillContent {
    using Part = std::variant<LabelContent, Keycaps>;

    static constexpr double rowHeight = 34;  ///< Points.
    static constexpr double padding = 18;    ///< Points, at both ends of the row.
    static constexpr double gap = 7;         ///< Points, between the symbol and each of the parts.

    /// Points that a notch hides above the row; 0 without one.
    double top = 0;
    /// Points: a notch is never wider than the pill below it.
    double minimumWidth = 0;
    SymbolContent symbol;
    std::vector<Part> parts;  ///< In a row behind the symbol.
    /// What a tap does, as far as it does something.
    bool isButton = false;
    std::string accessibleName;

    bool operator==(const NoticePillContent&) const = default;
};

/// Says how to end Quick Blur, for a moment.
struct QuickBlurPill {
    static constexpr double visibleFor = 1.5;   ///< Seconds.
    static constexpr double fadeSeconds = 0.4;  ///< With an ease-out; 0 with reduced motion.

    static NoticePillContent content(const std::optional<NotchMetrics>& notch);
};

struct ToastPill {
    /// Nothing for no detail. `symbol` by its name.
    static NoticePillContent content(std::string_view title, std::optional<std::string_view> detail,
                                     std::string_view symbol,
                                     const std::optional<NotchMetrics>& notch,
                                     bool increasedContrast);
};

}  // namespace OrvelUI
