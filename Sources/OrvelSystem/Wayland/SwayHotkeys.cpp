#include "OrvelSystem/Wayland/SwayHotkeys.h"

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <wordexp.h>

#include "OrvelCore/AtomicFile.h"
#include "OrvelCore/Brand.h"
#include "OrvelCore/SwayConfig.h"
#include "OrvelSystem/Wayland/KeyNames.h"
#include "OrvelSystem/X11/KeyCodes.h"

namespace OrvelSystem {

namespace fs = std::filesystem;
using OrvelCore::Shortcut;
using Message = SwayConnection::Message;

namespace {

/// Sway does nothing for such a binding, but reports that it was pressed.
std::string command(std::uint32_t number) {
    return fmt::format("nop {} {}", OrvelCore::Brand::urlScheme, number);
}

/// Resolves a path as sway does, relative to the folder of the configuration.
OrvelCore::SwayInclude includeFrom(const fs::path& folder) {
    return [folder](const std::string& path) -> std::optional<std::vector<std::string>> {
        const auto full = path.starts_with('/') || path.starts_with('~') || path.starts_with('$')
                              ? path
                              : (folder / path).string();
        wordexp_t words{};
        if (wordexp(full.c_str(), &words, WRDE_NOCMD) != 0) return {};
        std::vector<std::string> texts;
        bool isReadable = true;
        for (std::size_t at = 0; at < words.we_wordc; ++at) {
            std::error_code error;
            // sway ignores a file that does not exist.
            if (!fs::exists(words.we_wordv[at], error)) continue;
            auto text = OrvelCore::readFile(words.we_wordv[at]);
            isReadable = isReadable && text;
            texts.push_back(std::move(text).value_or(std::string()));
        }
        wordfree(&words);
        return isReadable ? std::optional(std::move(texts)) : std::nullopt;
    };
}

OrvelCore::SwayBindings configured(SwayConnection& sway) {
    const auto version = sway.ask(Message::version);
    const auto config = sway.ask(Message::config);
    if (!version || !config || !version->is_object() || !config->is_object())
        return {.isComplete = false};
    const fs::path file = version->value("loaded_config_file_name", std::string());
    return OrvelCore::swayBindings(config->value("config", std::string()),
                                   includeFrom(file.parent_path()));
}

}  // namespace

std::string SwayHotkeys::Binding::keys() const {
    return fmt::format("{}+{}", fmt::join(modifiers, "+"), keyName);
}

SwayHotkeys::SwayHotkeys(SwayConnection& sway) : sway_(sway) {
    events_ = sway.observe([this](std::string_view kind, const nlohmann::json& event) {
        if (kind == "workspace" && event.value("change", "") == "reload") return reloaded();
        if (kind != "binding" || !event.contains("binding")) return;
        const auto pressed = event["binding"].value("command", std::string());
        for (const auto& [number, binding] : bindings_) {
            if (pressed == command(number)) return pressed_(number);
        }
    });
}

SwayHotkeys::~SwayHotkeys() {
    for (auto& [number, binding] : bindings_) unbind(binding);
}

void SwayHotkeys::installEventHandler(std::function<void(std::uint32_t)> pressed) {
    pressed_ = std::move(pressed);
}

std::optional<HotkeyRef> SwayHotkeys::registerShortcut(const Shortcut& shortcut,
                                                       std::uint32_t number, std::string_view) {
    const auto xKeycode = KeyCodes({}).xKeycode(shortcut.keyCode);
    if (!xKeycode) return {};
    Binding binding{.modifiers = OrvelCore::swayModifiers(shortcut.modifiers),
                    .keyName = xkbKeyName(shortcut, *xKeycode),
                    .xKeycode = *xKeycode};
    const bool isOurs = std::ranges::any_of(
        bindings_, [&](const auto& entry) { return entry.second.keys() == binding.keys(); });
    if (binding.modifiers.empty() || binding.keyName.empty() || isOurs || !bind(number, binding))
        return {};
    binding.isBound = true;
    bindings_.insert_or_assign(number, binding);
    return number;
}

void SwayHotkeys::unregisterHotKey(HotkeyRef ref) {
    const auto found = bindings_.find(static_cast<std::uint32_t>(ref));
    if (found == bindings_.end()) return;
    unbind(found->second);
    bindings_.erase(found);
}

bool SwayHotkeys::bind(std::uint32_t number, const Binding& binding) {
    if (configured(sway_).mayHave(binding.modifiers, binding.keyName, binding.xKeycode))
        return false;
    return runInDefaultMode(
        fmt::format("bindsym --no-warn {} {}", binding.keys(), command(number)));
}

void SwayHotkeys::unbind(Binding& binding) {
    if (binding.isBound) runInDefaultMode("unbindsym " + binding.keys());
    binding.isBound = false;
}

void SwayHotkeys::reloaded() {
    for (auto& [number, binding] : bindings_) binding.isBound = bind(number, binding);
}

// Sway changes the bindings of the mode that it is in.
bool SwayHotkeys::runInDefaultMode(const std::string& commandText) {
    constexpr auto usual = "default";
    const auto state = sway_.ask(Message::bindingState);
    if (!state || !state->is_object()) return false;
    const auto mode = state->value("name", std::string(usual));
    if (mode == usual) return sway_.run(commandText);
    return sway_.run(fmt::format("mode \"{}\"; {}; mode \"{}\"", usual, commandText, mode));
}

}  // namespace OrvelSystem
