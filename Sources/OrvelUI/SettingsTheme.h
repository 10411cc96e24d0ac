#pragma once

#include "OrvelUI/Palette.h"

namespace OrvelUI {

/// Selects the colours of the program's windows. With increased contrast, the secondary ink becomes
/// the primary one, and the tertiary ink the secondary one.
struct SettingsTheme {
    enum class Scheme { light, dark };
    enum class Contrast { standard, increased };

    Scheme scheme = Scheme::light;
    Contrast contrast = Contrast::standard;

    Palette::Value canvas() const { return pick(Palette::canvasLight, Palette::canvasDark); }
    Palette::Value surface() const { return pick(Palette::surfaceLight, Palette::surfaceDark); }
    Palette::Value ink() const { return pick(Palette::inkLight, Palette::inkDark); }
    Palette::Value ink2() const {
        return contrast == Contrast::increased ? ink()
                                               : pick(Palette::ink2Light, Palette::ink2Dark);
    }
    Palette::Value ink3() const {
        return contrast == Contrast::increased ? pick(Palette::ink2Light, Palette::ink2Dark)
                                               : pick(Palette::ink3Light, Palette::ink3Dark);
    }
    Palette::Value accent() const { return pick(Palette::accentLight, Palette::accentDark); }
    Palette::Value error() const { return pick(Palette::errorLight, Palette::errorDark); }

    bool operator==(const SettingsTheme&) const = default;

  private:
    Palette::Value pick(Palette::Value light, Palette::Value dark) const {
        return scheme == Scheme::light ? light : dark;
    }
};

}  // namespace OrvelUI
