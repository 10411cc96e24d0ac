#pragma once

#include "OrvelCore/Preferences.h"

namespace OrvelCore {

/// The computed look of one overlay.
struct OverlayLook {
    enum class Tone { light, dark };

    int radius = 0;
    Tone tone = Tone::dark;
    /// 0 to 1.
    double tintOpacity = 0;
    /// An opaque surface: no blur shows.
    bool solid = false;

    static const OverlayLook standardLock;
    static const OverlayLook standardMode;

    bool operator==(const OverlayLook&) const = default;
};

inline constexpr OverlayLook OverlayLook::standardLock{28, Tone::dark, 0.45, false};
inline constexpr OverlayLook OverlayLook::standardMode{28, Tone::dark, 0.3, false};

/// From the user's choices, whether the system asks for less transparency and whether its
/// appearance is dark.
namespace Looks {

OverlayLook lock(const Preferences& prefs, bool reduceTransparency, bool darkAppearance);
OverlayLook quickBlur(const Preferences& prefs, bool reduceTransparency, bool darkAppearance);
OverlayLook focusBlur(const Preferences& prefs, bool reduceTransparency, bool darkAppearance);

}  // namespace Looks

}  // namespace OrvelCore
