#pragma once

#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/Shortcut.h"

namespace OrvelModes {

/// Keeps the global hotkeys in step with the user's settings. Main thread only.
class ShortcutRegistrar {
  public:
    using Action = OrvelCore::ShortcutSet::Action;
    /// Registers a hotkey and returns the function that unregisters it; an empty function if it was
    /// refused.
    using Register = std::function<std::function<void()>(
        Action action, const OrvelCore::Shortcut& shortcut, std::function<void()> handler)>;

    std::function<void(Action)> onPressed = [](Action) {};
    /// Called after each registration with the actions whose shortcuts were refused; also if none
    /// was.
    std::function<void(const std::set<Action>&)> onTaken = [](const std::set<Action>&) {};

    /// Destroying the registrar unregisters nothing.
    explicit ShortcutRegistrar(Register registerHotkey);

    /// A set that has not changed is not registered again, so refused shortcuts are not retried.
    void apply(const OrvelCore::ShortcutSet& set);
    /// Unregisters all shortcuts; until `resume`, `apply` only stores the set.
    void pause();
    /// Registers the last applied set again.
    void resume();
    bool isPaused() const { return isPaused_; }

  private:
    void unregisterAll();
    void registerAll();

    bool isPaused_ = false;
    Register register_;
    std::optional<OrvelCore::ShortcutSet> wanted_;
    std::optional<OrvelCore::ShortcutSet> registered_;
    std::vector<std::function<void()>> unregisters_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelModes
