#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/Shortcut.h"
#include "OrvelSystem/HotkeyPlatform.h"

namespace OrvelSystem {

/// Registers shortcuts as global hotkeys and identifies each by a number. Main thread only.
class HotkeyCenter {
  public:
    using KeysGiven = std::function<void(const std::string& keys)>;

    /// The platform must outlive the center. The destructor does not unregister hotkeys: those that
    /// remain keep their key combinations and do nothing.
    explicit HotkeyCenter(HotkeyPlatform& platform);

    /// Returns the registration's number, or `nullopt` if the system refuses the combination. A
    /// refused registration also uses up a number. `handler` may register and unregister hotkeys.
    /// `title` and `given` are as in `HotkeyPlatform`.
    std::optional<std::uint32_t> registerHotkey(const OrvelCore::Shortcut& shortcut,
                                                std::function<void()> handler,
                                                std::string_view title = {}, KeysGiven given = {});
    /// Does nothing if the number is not registered.
    void unregister(std::uint32_t number);

    /// A combination of `CarbonModifiers`.
    static std::uint32_t carbonModifiers(OrvelCore::Shortcut::Modifiers modifiers);

  private:
    void pressed(std::uint32_t number) const;

    HotkeyPlatform& platform_;
    struct Handlers {
        std::function<void()> pressed;
        KeysGiven given;
    };
    std::map<std::uint32_t, Handlers> handlers_;
    std::map<std::uint32_t, HotkeyRef> refs_;
    bool handlerInstalled_ = false;
    std::uint32_t nextID_ = 1;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelSystem
