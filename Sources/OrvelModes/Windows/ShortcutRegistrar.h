#pragma once

#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/Shortcut.h"

namespace OrvelModes {

/// Keeps the global hotkeys equal to what the user has set. Main thread only.
class ShortcutRegistrar {
  public:
    using Action = OrvelCore::ShortcutSet::Action;
    /// Registers a hotkey and gives what unregisters it; an empty function when it was refused.
    using Register = std::function<std::function<void()>(const OrvelCore::Shortcut& shortcut,
                                                         std::function<void()> handler)>;

    std::function<void(Action)> onPressed = [](Action) {};
    /// Told after each registration which actions were refused; also when none was.
    std::function<void(const std::set<Action>&)> onTaken = [](const std::set<Action>&) {};

    /// Dropping the registrar unregisters nothing.
    explicit ShortcutRegistrar(Register registerHotkey);

    /// An unchanged set is not registered again, so that what was refused is not tried again.
    void apply(const OrvelCore::ShortcutSet& set);
    /// Holds all shortcuts off; `apply` then only remembers the set.
    void pause();
    /// Registers anew what was applied last.
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
