#include "OrvelUI/NoticePill.h"

#include "OrvelUI/IslandLayout.h"

namespace OrvelUI {

namespace {

constexpr double symbolSize = 11;
constexpr double titleSize = 13;
constexpr double detailSize = 12;

NoticePillContent pill(std::string_view symbol, const std::optional<NotchMetrics>& notch) {
    NoticePillContent content;
    if (notch) {
        content.top = IslandLayout::bandHeight(notch);
        content.minimumWidth = notch->width + 2 * NoticePillContent::padding;
    }
    content.symbol = {.name = std::string(symbol), .size = symbolSize, .ink = {}};
    return content;
}

LabelContent label(std::string_view text, double size, LabelContent::Weight weight,
                   double opacity) {
    LabelContent content;
    content.text = text;
    content.size = size;
    content.weight = weight;
    content.ink = {Palette::lockInk, opacity};
    return content;
}

}  // namespace

NoticePillContent QuickBlurPill::content(const std::optional<NotchMetrics>& notch) {
    const auto quiet = [](std::string_view text) {
        return label(text, detailSize, LabelContent::Weight::regular,
                     Palette::lockSecondaryOpacity(false));
    };
    auto content = pill("eye.slash.fill", notch);
    content.parts = {label("Blurred", titleSize, LabelContent::Weight::semibold, 1), quiet("Press"),
                     Keycaps{.caps = {"esc"}, .tone = Keycaps::Tone::onDark, .large = false},
                     quiet("to reveal")};
    content.isButton = true;
    content.accessibleName = "Blurred. Press Escape to reveal.";
    return content;
}

NoticePillContent ToastPill::content(std::string_view title, std::optional<std::string_view> detail,
                                     std::string_view symbol,
                                     const std::optional<NotchMetrics>& notch,
                                     bool increasedContrast) {
    auto content = pill(symbol, notch);
    content.parts.emplace_back(label(title, titleSize, LabelContent::Weight::semibold, 1));
    content.accessibleName = title;
    if (detail) {
        content.parts.emplace_back(label(*detail, detailSize, LabelContent::Weight::regular,
                                         Palette::lockSecondaryOpacity(increasedContrast)));
        content.accessibleName += ". ";
        content.accessibleName += *detail;
    }
    return content;
}

}  // namespace OrvelUI
