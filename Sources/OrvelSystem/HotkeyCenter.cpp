#include "OrvelSystem/HotkeyCenter.h"

#include <utility>

namespace OrvelSystem {

using OrvelCore::Shortcut;

std::optional<HotkeyRef> HotkeyPlatform::registerShortcut(const Shortcut& shortcut,
                                                          std::uint32_t number, std::string_view) {
    return registerHotKey(shortcut.keyCode, HotkeyCenter::carbonModifiers(shortcut.modifiers),
                          number);
}

HotkeyCenter::HotkeyCenter(HotkeyPlatform& platform) : platform_(platform) {}

std::optional<std::uint32_t> HotkeyCenter::registerHotkey(const Shortcut& shortcut,
                                                          std::function<void()> handler,
                                                          std::string_view title, KeysGiven given) {
    if (!std::exchange(handlerInstalled_, true)) {
        platform_.installEventHandler(
            lifetime_.guard([this](std::uint32_t number) { pressed(number); }));
        platform_.observeKeys(
            lifetime_.guard([this](std::uint32_t number, const std::string& keys) {
                const auto found = handlers_.find(number);
                if (found != handlers_.end() && found->second.given) found->second.given(keys);
            }));
    }
    const std::uint32_t number = nextID_++;
    const auto ref = platform_.registerShortcut(shortcut, number, title);
    if (!ref) return {};
    refs_.emplace(number, *ref);
    handlers_.emplace(number, Handlers{std::move(handler), std::move(given)});
    return number;
}

void HotkeyCenter::unregister(std::uint32_t number) {
    if (const auto ref = refs_.extract(number)) platform_.unregisterHotKey(ref.mapped());
    handlers_.erase(number);
}

std::uint32_t HotkeyCenter::carbonModifiers(Shortcut::Modifiers modifiers) {
    std::uint32_t mask = 0;
    if (modifiers.contains(Shortcut::Modifiers::command)) mask |= CarbonModifiers::command;
    if (modifiers.contains(Shortcut::Modifiers::option)) mask |= CarbonModifiers::option;
    if (modifiers.contains(Shortcut::Modifiers::control)) mask |= CarbonModifiers::control;
    if (modifiers.contains(Shortcut::Modifiers::shift)) mask |= CarbonModifiers::shift;
    return mask;
}

void HotkeyCenter::pressed(std::uint32_t number) const {
    const auto found = handlers_.find(number);
    if (found == handlers_.end()) return;
    // Call a copy: a handler that changes the shortcuts erases itself from the map while it runs.
    const auto handler = found->second.pressed;
    handler();
}

}  // namespace OrvelSystem
