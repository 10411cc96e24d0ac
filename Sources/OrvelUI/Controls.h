#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "OrvelUI/SettingsTheme.h"

/// Small controls that several views share, as plain values.
namespace OrvelUI {

/// The keys of a shortcut, drawn as keycaps.
struct Keycaps {
    /// On the island, on a background in the accent colour, or in a window of the program.
    enum class Tone { onDark, onAccent, system };
    struct Inks {
        Palette::Ink fill;
        Palette::Ink border;
        Palette::Ink text;
        bool operator==(const Inks&) const = default;
    };

    std::vector<std::string> caps;
    Tone tone = Tone::system;
    bool large = false;

    /// The keycaps in words: "Option Command L".
    static std::string spoken(const std::vector<std::string>& caps);
    /// `theme` is that of the window; the other tones ignore it.
    Inks inks(const SettingsTheme& theme = {}) const;
    // In points.
    static constexpr double gap = 3;  ///< Between two caps.
    double height() const { return large ? 28 : 19; }
    double padding() const { return large ? 9 : 5; }  ///< At the sides of a cap's text.
    double cornerRadius() const { return large ? 7 : 5; }
    double textSize() const { return large ? 14 : 11; }
    bool operator==(const Keycaps&) const = default;
};

/// Keycaps that pulse to ask the user to press them.
struct PulsingKeycaps {
    Keycaps keycaps;
    bool pulses = false;

    static PulsingKeycaps of(Keycaps keycaps, bool reduceMotion) {
        return {.keycaps = std::move(keycaps), .pulses = !reduceMotion};
    }
    bool operator==(const PulsingKeycaps&) const = default;
};

/// A ring that rotates while something is checked.
struct Spinner {
    static constexpr double stroke = 2;     ///< Points.
    static constexpr double diameter = 10;  ///< The diameter of the middle of the line, in points.
    static constexpr double period = 0.9;   ///< Seconds for one full turn.
    static constexpr std::string_view label = "Checking";
};

/// The current one of a row of steps. `current` starts at 1.
struct PageDots {
    int count = 0;
    int current = 1;

    std::string spoken() const;
    bool operator==(const PageDots&) const = default;
};

/// An on-off switch in the style of the island.
struct IslandSwitch {
    static constexpr double width = 36;   ///< Points.
    static constexpr double height = 21;  ///< Points.
    /// The distance between the knob and the track, in points.
    static constexpr double knobInset = 2;
    static constexpr double slideSeconds = 0.14;  ///< Seconds for the knob to move from end to end.

    bool on = false;
    std::string label;
    std::string hint;
    std::function<void()> toggle;
};

}  // namespace OrvelUI
