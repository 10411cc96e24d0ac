#include "OrvelCore/Looks.h"

namespace OrvelCore {

namespace {

// Deliberately outside the user's range: this style shows only colours, whatever the slider's
// value.
constexpr int ambientRadius = 96;
constexpr double ambientOpacity = 0.7;

OverlayLook::Tone tone(OverlayTint tint, bool darkAppearance) {
    switch (tint) {
        case OverlayTint::light:
            return OverlayLook::Tone::light;
        case OverlayTint::dark:
            return OverlayLook::Tone::dark;
        case OverlayTint::automatic:
            break;
    }
    return darkAppearance ? OverlayLook::Tone::dark : OverlayLook::Tone::light;
}

}  // namespace

OverlayLook Looks::lock(const Preferences& prefs, bool reduceTransparency, bool darkAppearance) {
    const bool isAmbient = prefs.lockStyle == LockStyle::ambient;
    return {isAmbient ? ambientRadius : BlurIntensity::clamped(prefs.lockIntensity, false),
            tone(prefs.tint, darkAppearance),
            isAmbient ? ambientOpacity : OverlayLook::standardLock.tintOpacity,
            reduceTransparency || prefs.lockStyle == LockStyle::solid};
}

OverlayLook Looks::quickBlur(const Preferences& prefs, bool reduceTransparency,
                             bool darkAppearance) {
    return {BlurIntensity::clamped(prefs.quickBlurIntensity, false),
            tone(prefs.tint, darkAppearance), OverlayLook::standardMode.tintOpacity,
            reduceTransparency};
}

OverlayLook Looks::focusBlur(const Preferences& prefs, bool reduceTransparency,
                             bool darkAppearance) {
    return {BlurIntensity::clamped(prefs.focusBlurIntensity, true),
            tone(prefs.tint, darkAppearance), OverlayLook::standardMode.tintOpacity,
            reduceTransparency};
}

}  // namespace OrvelCore
