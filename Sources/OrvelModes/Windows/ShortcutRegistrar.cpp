#include "OrvelModes/Windows/ShortcutRegistrar.h"

#include <utility>

namespace OrvelModes {

using OrvelCore::ShortcutSet;

ShortcutRegistrar::ShortcutRegistrar(Register registerHotkey)
    : register_(std::move(registerHotkey)) {}

void ShortcutRegistrar::apply(const ShortcutSet& set) {
    wanted_ = set;
    if (isPaused_ || registered_ == wanted_) return;
    registerAll();
}

void ShortcutRegistrar::pause() {
    isPaused_ = true;
    unregisterAll();
}

void ShortcutRegistrar::resume() {
    isPaused_ = false;
    registerAll();
}

void ShortcutRegistrar::unregisterAll() {
    for (const auto& unregister : std::exchange(unregisters_, {})) unregister();
    registered_.reset();
}

void ShortcutRegistrar::registerAll() {
    unregisterAll();
    if (!wanted_) return;
    std::set<Action> taken;
    for (const Action action : OrvelCore::allCases<Action>()) {
        const auto& shortcut = std::as_const(*wanted_)[action];
        if (!shortcut) continue;
        auto unregister =
            register_(action, *shortcut, lifetime_.guard([this, action] { onPressed(action); }));
        if (unregister)
            unregisters_.push_back(std::move(unregister));
        else
            taken.insert(action);
    }
    registered_ = wanted_;
    onTaken(taken);
}

}  // namespace OrvelModes
