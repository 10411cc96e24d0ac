#include "OrvelUI/Palette.h"

#include "OrvelCore/Looks.h"

namespace OrvelUI::Palette {

namespace {

Value base(const OrvelCore::OverlayLook& look) {
    return look.tone == OrvelCore::OverlayLook::Tone::dark ? lockTint : canvasLight;
}

}  // namespace

OrvelCore::Color tintColor(const OrvelCore::OverlayLook& look) {
    return color(base(look), look.tintOpacity);
}

OrvelCore::Color solidColor(const OrvelCore::OverlayLook& look) {
    return color(base(look));
}

}  // namespace OrvelUI::Palette
