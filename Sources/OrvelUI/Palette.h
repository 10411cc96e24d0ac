#pragma once

#include <cstdint>

#include "OrvelCore/Color.h"

namespace OrvelCore {
struct OverlayLook;
}

/// The product's only colour table: colours as 0xRRGGBB, and the opacities with which they are
/// drawn.
namespace OrvelUI::Palette {

using Value = std::uint32_t;

inline constexpr Value lockInk = 0xF5F6F8;
inline constexpr Value lockDanger = 0xFF8A84;
inline constexpr Value island = 0x000000;
inline constexpr Value lockCard = 0x16181D;
inline constexpr Value lockTint = 0x0B0D12;
inline constexpr Value desktopTop = 0x4F6A9E;
inline constexpr Value desktopBottom = 0x2A3A63;
inline constexpr Value canvasLight = 0xF5F6F8;
inline constexpr Value canvasDark = 0x0E1116;
inline constexpr Value surfaceLight = 0xFFFFFF;
inline constexpr Value surfaceDark = 0x16181D;
inline constexpr Value inkLight = 0x0E1116;
inline constexpr Value inkDark = 0xF5F6F8;
inline constexpr Value ink2Light = 0x5B6270;
inline constexpr Value ink2Dark = 0x9BA1AD;
inline constexpr Value ink3Light = 0x6B7280;
inline constexpr Value ink3Dark = 0x8A909C;
inline constexpr Value accentLight = 0x0B7C87;
inline constexpr Value accentDark = 0x3CC6D0;
inline constexpr Value errorLight = 0xC42B2B;
inline constexpr Value errorDark = 0xFF8A84;

constexpr double lockSecondaryOpacity(bool increasedContrast) {
    return increasedContrast ? 0.9 : 0.66;
}
inline constexpr double lockTertiaryOpacity = 0.55;
inline constexpr double islandFieldFillOpacity = 0.1;
inline constexpr double islandPlaceholderOpacity = 0.62;
inline constexpr double islandFieldTextOpacity = 0.92;
inline constexpr double lockCardOpacity = 0.82;
inline constexpr double lockDateOpacity = 0.62;
inline constexpr double lockTintOpacity = 0.45;

/// The shadow of a shape. `radius` is how far it extends beyond the outline, `drop` how far it is
/// moved down, both in points.
struct Shadow {
    double opacity = 0;
    double radius = 0;
    double drop = 0;
};

constexpr OrvelCore::Color color(Value value, double alpha = 1) {
    constexpr auto channel = [](Value byte) { return static_cast<double>(byte & 0xFF) / 255; };
    return {.red = channel(value >> 16),
            .green = channel(value >> 8),
            .blue = channel(value),
            .alpha = alpha};
}

/// A colour of the table with an opacity, as contents store it and renderers draw it.
struct Ink {
    Value value = lockInk;
    double opacity = 1;

    OrvelCore::Color color() const { return Palette::color(value, opacity); }
    bool operator==(const Ink&) const = default;
};

/// The colour that is drawn over a blur, with the opacity of the look.
OrvelCore::Color tintColor(const OrvelCore::OverlayLook& look);
/// The colour that replaces a blur where none may be shown: opaque, in the tone of the look.
OrvelCore::Color solidColor(const OrvelCore::OverlayLook& look);

}  // namespace OrvelUI::Palette
