#include "OrvelUI/MenuPanelText.h"

#include <cmath>

#include <fmt/format.h>

#include "OrvelCore/Brand.h"

namespace OrvelUI::MenuPanelText {

std::string status(const std::vector<std::string>& privateNames, std::size_t lockedCount,
                   bool focusBlurOn, bool quickBlurOn) {
    if (quickBlurOn) return "Screen blurred";
    if (lockedCount == 1) return "1 app locked";
    if (lockedCount >= 2) return fmt::format("{} apps locked", lockedCount);
    if (!privateNames.empty()) return "Protecting " + list(privateNames);
    if (focusBlurOn) return "Focus Blur is on";
    return "Ready";
}

std::string list(const std::vector<std::string>& names) {
    switch (names.size()) {
        case 0:
            return {};
        case 1:
            return names[0];
        case 2:
            return fmt::format("{} and {}", names[0], names[1]);
        default:
            return fmt::format("{}, {}{}", names[0], names[1], listTail(names));
    }
}

std::string listTail(const std::vector<std::string>& names) {
    return names.size() < 3 ? std::string() : fmt::format(" and {} more", names.size() - 2);
}

std::string privateSummary(const std::vector<std::string>& names) {
    return names.empty() ? "Choose apps" : list(names);
}

std::string lockedAgo(OrvelCore::Date since, OrvelCore::Date now) {
    const double minutes = std::floor(OrvelCore::secondsBetween(since, now) / 60);
    if (minutes < 1) return "Locked just now";
    if (minutes < 60) return fmt::format("Locked {:.0f} min ago", minutes);
    return fmt::format("Locked {:.0f} hr ago", std::floor(minutes / 60));
}

std::string updateLine(std::string_view version) {
    return fmt::format("Version {} is ready to install", version);
}

std::string restartLine() {
    return fmt::format("{} restarts after you unlock", OrvelCore::Brand::name);
}

}  // namespace OrvelUI::MenuPanelText
