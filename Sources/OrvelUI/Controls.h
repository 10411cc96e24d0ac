#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "OrvelUI/SettingsTheme.h"

/// The small controls that more than one view uses, as plain values.
namespace OrvelUI {

/// The keys of a shortcut as caps.
struct Keycaps {
    /// On the island, on a field of the accent colour, or on a window of the program.
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

    /// The caps in words: "Option Command L".
    static std::string spoken(const std::vector<std::string>& caps);
    /// `theme` is that of the window, and plays no part in the other tones.
    Inks inks(const SettingsTheme& theme = {}) const;
    double height() const { return large ? 28 : 19; }  ///< Points.
    bool operator==(const Keycaps&) const = default;
};

/// Keycaps that ask to be pressed.
struct PulsingKeycaps {
    Keycaps keycaps;
    bool pulses = false;

    static PulsingKeycaps of(Keycaps keycaps, bool reduceMotion) {
        return {.keycaps = std::move(keycaps), .pulses = !reduceMotion};
    }
    bool operator==(const PulsingKeycaps&) const = default;
};

/// A ring that turns over and over while something is checked.
struct Spinner {
    static constexpr double stroke = 2;     ///< Points.
    static constexpr double diameter = 10;  ///< Points, of the line's middle.
    static constexpr double period = 0.9;   ///< Seconds of one full turn.
    static constexpr std::string_view label = "Checking";
};

/// Where one is in a row of steps. `current` counts from 1.
struct PageDots {
    int count = 0;
    int current = 1;

    std::string spoken() const;
    bool operator==(const PageDots&) const = default;
};

/// An on-off switch in the island's look.
struct IslandSwitch {
    static constexpr double width = 36;           ///< Points.
    static constexpr double height = 21;          ///< Points.
    static constexpr double knobInset = 2;        ///< Points, of the knob in the track.
    static constexpr double slideSeconds = 0.14;  ///< Of the knob from end to end.

    bool on = false;
    std::string label;
    std::string hint;
    std::function<void()> toggle;
};

}  // namespace OrvelUI
