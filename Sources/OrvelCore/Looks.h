#pragma once

#include "OrvelCore/Preferences.h"

namespace OrvelCore {

/// The look of one overlay.
struct OverlayLook {
    enum class Tone { light, dark };

    /// The blur radius in points.
    int radius = 0;
    Tone tone = Tone::dark;
    /// From 0 to 1.
    double tintOpacity = 0;
    /// Whether the overlay is opaque, without a blur.
    bool solid = false;

    static const OverlayLook standardLock;
    static const OverlayLook standardMode;

    bool operator==(const OverlayLook&) const = default;
};

inline constexpr OverlayLook OverlayLook::standardLock{28, Tone::dark, 0.45, false};
inline constexpr OverlayLook OverlayLook::standardMode{28, Tone::dark, 0.3, false};

/// Compute a look from the user's preferences, from whether the system asks for less transparency,
/// and from whether its appearance is dark.
namespace Looks {

OverlayLook lock(const Preferences& prefs, bool reduceTransparency, bool darkAppearance);
OverlayLook quickBlur(const Preferences& prefs, bool reduceTransparency, bool darkAppearance);
OverlayLook focusBlur(const Preferences& prefs, bool reduceTransparency, bool darkAppearance);

}  // namespace Looks

}  // namespace OrvelCore
