#include "OrvelUI/Controls.h"

#include <array>
#include <utility>

#include <fmt/format.h>

namespace OrvelUI {

std::string Keycaps::spoken(const std::vector<std::string>& caps) {
    using Name = std::pair<std::string_view, std::string_view>;
    static constexpr std::array names{Name{"⌃", "Control"}, Name{"⌥", "Option"}, Name{"⇧", "Shift"},
                                      Name{"⌘", "Command"}, Name{"esc", "Escape"}};
    std::string words;
    for (const auto& cap : caps) {
        std::string_view word = cap;
        for (const auto& [symbol, name] : names)
            if (symbol == cap) word = name;
        if (!words.empty()) words += ' ';
        words += word;
    }
    return words;
}

Keycaps::Inks Keycaps::inks(const SettingsTheme& theme) const {
    switch (tone) {
        case Tone::onDark:
            return {{Palette::lockInk, 0.1}, {Palette::lockInk, 0.14}, {Palette::lockInk, 0.86}};
        case Tone::onAccent:
            return {{Palette::inkLight, 0.13}, {Palette::inkLight, 0.16}, {Palette::inkLight, 1}};
        case Tone::system:
            break;
    }
    return {{theme.ink(), 0.05}, {theme.ink(), 0.16}, {theme.ink2(), 1}};
}

std::string PageDots::spoken() const {
    return fmt::format("Step {} of {}", current, count);
}

}  // namespace OrvelUI
