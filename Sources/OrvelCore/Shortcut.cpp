#include "OrvelCore/Shortcut.h"

#include <charconv>
#include <numeric>
#include <system_error>

#include <fmt/core.h>

namespace OrvelCore {

namespace {

template <class Number>
std::optional<Number> parse(std::string_view digits) {
    Number value{};
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc() || stop != end) return std::nullopt;
    return value;
}

}  // namespace

Shortcut Shortcut::lockMac() {
    return {37, "L", Modifiers::command};
}
Shortcut Shortcut::lockApp() {
    return {37, "L", Modifiers::command | Modifiers::option};
}

std::string Shortcut::stored() const {
    return fmt::format("{}:{}:{}", keyCode, modifiers.rawValue, key);
}

std::optional<Shortcut> Shortcut::fromStored(std::string_view text) {
    const auto first = text.find(':');
    if (first == std::string_view::npos) return std::nullopt;
    const auto second = text.find(':', first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    const auto keyCode = parse<std::uint32_t>(text.substr(0, first));
    const auto modifiers = parse<std::int64_t>(text.substr(first + 1, second - first - 1));
    // The label may contain colons, as the label of the colon key does.
    const auto key = text.substr(second + 1);
    if (!keyCode || !modifiers || key.empty()) return std::nullopt;
    return Shortcut{*keyCode, std::string(key), {*modifiers}};
}

std::vector<std::string> Shortcut::keycaps() const {
    std::vector<std::string> caps;
    if (modifiers.contains(Modifiers::control)) caps.emplace_back("⌃");
    if (modifiers.contains(Modifiers::option)) caps.emplace_back("⌥");
    if (modifiers.contains(Modifiers::shift)) caps.emplace_back("⇧");
    if (modifiers.contains(Modifiers::command)) caps.emplace_back("⌘");
    caps.push_back(key);
    return caps;
}

std::string Shortcut::display() const {
    const auto caps = keycaps();
    return std::accumulate(caps.begin(), caps.end(), std::string());
}

std::optional<Shortcut>& ShortcutSet::operator[](Action action) {
    switch (action) {
        case Action::lockMac:
            return lockMac;
        case Action::lockApp:
            return lockApp;
        case Action::quickBlur:
            return quickBlur;
        case Action::focusBlur:
            break;
    }
    return focusBlur;
}

const std::optional<Shortcut>& ShortcutSet::operator[](Action action) const {
    return const_cast<ShortcutSet&>(*this)[action];
}

std::string_view title(ShortcutSet::Action action) {
    switch (action) {
        case ShortcutSet::Action::lockMac:
            return "Lock Mac";
        case ShortcutSet::Action::lockApp:
            return "Lock the app in front";
        case ShortcutSet::Action::quickBlur:
            return "Blur Screen";
        case ShortcutSet::Action::focusBlur:
            break;
    }
    return "Focus Blur";
}

}  // namespace OrvelCore
