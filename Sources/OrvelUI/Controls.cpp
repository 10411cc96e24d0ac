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

std::string PageDots::spoken() const {
    return fmt::format("Step {} of {}", current, count);
}

}  // namespace OrvelUI
