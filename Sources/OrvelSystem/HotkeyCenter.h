#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/Shortcut.h"
#include "OrvelSystem/HotkeyPlatform.h"

namespace OrvelSystem {

/// Turns shortcuts into global hotkeys, each known by a number. Main thread only.
class HotkeyCenter {
  public:
    /// The platform must outlive the center. Dropping the center unregisters nothing: hotkeys that
    /// are left then take their keys and do nothing.
    explicit HotkeyCenter(HotkeyPlatform& platform);

    /// The registration's number, or nothing when the system refuses the combination. A refused
    /// registration uses up a number too. `handler` may register and unregister at will.
    std::optional<std::uint32_t> registerHotkey(const OrvelCore::Shortcut& shortcut,
                                                std::function<void()> handler);
    /// Harmless for a number that is not registered.
    void unregister(std::uint32_t number);

    static std::uint32_t carbonModifiers(OrvelCore::Shortcut::Modifiers modifiers);

  private:
    void pressed(std::uint32_t number) const;

    HotkeyPlatform& platform_;
    std::map<std::uint32_t, std::function<void()>> handlers_;
    std::map<std::uint32_t, HotkeyRef> refs_;
    bool handlerInstalled_ = false;
    std::uint32_t nextID_ = 1;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelSystem
