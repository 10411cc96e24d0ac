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

/// A short notice in a pill at the top of a display, below the notch if there is one. It is a
/// single element for screen readers.
struct NoticePillContent {
    using Part = std::variant<LabelContent, Keycaps>;

    static constexpr double rowHeight = 34;  ///< Points.
    static constexpr double padding = 18;    ///< Points, at both ends of the row.
    static constexpr double gap = 7;         ///< Points, between the symbol and each of the parts.
    /// Also that of the pill on the displays without the card.
    static constexpr Palette::Shadow shadow{.opacity = 0.4, .radius = 20, .drop = 4};

    /// The height of a notch above the row, in points; 0 without a notch.
    double top = 0;
    /// In points; keeps the pill wider than the notch above it.
    double minimumWidth = 0;
    SymbolContent symbol;
    std::vector<Part> parts;  ///< In a row after the symbol.
    /// Whether a tap does something.
    bool isButton = false;
    std::string accessibleName;

    bool operator==(const NoticePillContent&) const = default;
};

/// Briefly shows how to end Quick Blur.
struct QuickBlurPill {
    static constexpr double visibleFor = 1.5;  ///< Seconds.
    /// Seconds, with an ease-out; no fade with reduced motion.
    static constexpr double fadeSeconds = 0.4;

    static NoticePillContent content(const std::optional<NotchMetrics>& notch);
};

struct ToastPill {
    /// `detail` is `nullopt` for none; `symbol` is the name of a symbol.
    static NoticePillContent content(std::string_view title, std::optional<std::string_view> detail,
                                     std::string_view symbol,
                                     const std::optional<NotchMetrics>& notch,
                                     bool increasedContrast);
};

}  // namespace OrvelUI
