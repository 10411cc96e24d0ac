#pragma once

#include "OrvelUI/Palette.h"

/// How a cover looks to everybody: the user's own settings are for the lock and the blur modes.
namespace OrvelCovers::CoverLook {

/// Points; the softest at which text cannot be read.
inline constexpr int radius = 28;
/// Points.
inline constexpr double cornerRadius = 10;
inline constexpr OrvelCore::Color tint = OrvelUI::Palette::color(0x0B0D12, 0.2);
/// Stands in for the blur where transparency is to be reduced.
inline constexpr OrvelCore::Color opaqueFill = OrvelUI::Palette::color(0x0E1116);

}  // namespace OrvelCovers::CoverLook
