#include "OrvelSystem/Wayland/SwayHotkeys.h"

#include <QString>
#include <algorithm>
#include <filesystem>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <wordexp.h>
#include <xkbcommon/xkbcommon.h>

#include "OrvelCore/AtomicFile.h"
#include "OrvelCore/Brand.h"
#include "OrvelCore/SwayConfig.h"
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

std::string keysymName(xkb_keysym_t symbol) {
    char name[64] = "";
    if (xkb_keysym_get_name(symbol, name, sizeof(name)) < 0) return {};
    return name;
}

/// The name of the key at a position in the default layout, such as "space".
std::string nameAtPosition(std::uint32_t xKeycode) {
    struct Deleter {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_state* state) const { xkb_state_unref(state); }
    };
    const std::unique_ptr<xkb_context, Deleter> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!context) return {};
    const std::unique_ptr<xkb_keymap, Deleter> keymap(
        xkb_keymap_new_from_names(context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) return {};
    const std::unique_ptr<xkb_state, Deleter> state(xkb_state_new(keymap.get()));
    const auto symbol = xkb_state_key_get_one_sym(state.get(), xKeycode);
    return symbol == XKB_KEY_NoSymbol ? std::string() : keysymName(symbol);
}

std::string keyName(const Shortcut& shortcut, std::uint32_t xKeycode) {
    const auto label = QString::fromStdString(shortcut.key).toLower().toUcs4();
    if (label.size() == 1 && QChar::isLetter(label.front()))
        return keysymName(xkb_utf32_to_keysym(label.front()));
    return nameAtPosition(xKeycode);
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

Shortcut::Modifiers modifiersOf(std::uint32_t carbon) {
    Shortcut::Modifiers modifiers;
    if ((carbon & CarbonModifiers::command) != 0) modifiers |= Shortcut::Modifiers::command;
    if ((carbon & CarbonModifiers::option) != 0) modifiers |= Shortcut::Modifiers::option;
    if ((carbon & CarbonModifiers::control) != 0) modifiers |= Shortcut::Modifiers::control;
    if ((carbon & CarbonModifiers::shift) != 0) modifiers |= Shortcut::Modifiers::shift;
    return modifiers;
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

std::optional<HotkeyRef> SwayHotkeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                     std::uint32_t number) {
    return registerShortcut({.keyCode = keyCode}, modifiers, number);
}

std::optional<HotkeyRef> SwayHotkeys::registerShortcut(const Shortcut& shortcut,
                                                       std::uint32_t modifiers,
                                                       std::uint32_t number) {
    const auto xKeycode = KeyCodes({}).xKeycode(shortcut.keyCode);
    if (!xKeycode) return {};
    Binding binding{.modifiers = OrvelCore::swayModifiers(modifiersOf(modifiers)),
                    .keyName = keyName(shortcut, *xKeycode),
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
