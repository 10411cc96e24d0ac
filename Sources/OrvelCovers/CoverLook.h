#pragma once

#include "OrvelUI/Palette.h"

/// The look of all covers. The user's own settings apply only to the lock and the blur modes.
namespace OrvelCovers::CoverLook {

/// In points; the smallest radius at which text cannot be read.
inline constexpr int radius = 28;
/// In points.
inline constexpr double cornerRadius = 10;
inline constexpr OrvelCore::Color tint = OrvelUI::Palette::color(0x0B0D12, 0.2);
/// Replaces the blur where transparency is to be reduced.
inline constexpr OrvelCore::Color opaqueFill = OrvelUI::Palette::color(0x0E1116);

}  // namespace OrvelCovers::CoverLook
