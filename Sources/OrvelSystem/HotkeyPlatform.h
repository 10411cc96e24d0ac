#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "OrvelCore/Shortcut.h"

namespace OrvelSystem {

/// Modifier bits of `HotkeyPlatform::registerHotKey`, with the values that macOS uses.
namespace CarbonModifiers {
constexpr std::uint32_t command = 0x100;
constexpr std::uint32_t shift = 0x200;
constexpr std::uint32_t option = 0x800;
constexpr std::uint32_t control = 0x1000;
}  // namespace CarbonModifiers

/// The platform's handle of one registered hotkey.
using HotkeyRef = std::uintptr_t;

/// The system's service for global hotkeys. Main thread only.
class HotkeyPlatform {
  public:
    /// The characters "ORVL". macOS identifies a hotkey by its number together with this signature
    /// of the program.
    static constexpr std::uint32_t signature = 0x4F52564C;

    virtual ~HotkeyPlatform() = default;

    /// From now on, each press of a registered hotkey calls `pressed` once with its number, on the
    /// main thread.
    virtual void installEventHandler(std::function<void(std::uint32_t number)> pressed) = 0;
    /// From now on, each time the system reports the keys that the user has given a hotkey, calls
    /// `given` on the main thread with its number and a text such as "Ctrl+Alt+L", or an empty one
    /// if the hotkey has no keys. Systems that register a combination or refuse it report nothing.
    virtual void observeKeys(
        [[maybe_unused]] std::function<void(std::uint32_t number, const std::string& keys)> given) {
    }
    /// `keyCode` is a virtual key code of the Mac keyboard; `modifiers` is a combination of
    /// `CarbonModifiers`. Returns `nullopt` if another program has registered the combination or
    /// the system has no such key.
    virtual std::optional<HotkeyRef> registerHotKey([[maybe_unused]] std::uint32_t keyCode,
                                                    [[maybe_unused]] std::uint32_t modifiers,
                                                    [[maybe_unused]] std::uint32_t number) {
        return {};
    }
    /// The same for the combination of `shortcut`. Systems whose hotkeys are not identified by the
    /// position of a key override it. `title` is the name of the action that the user sees.
    virtual std::optional<HotkeyRef> registerShortcut(const OrvelCore::Shortcut& shortcut,
                                                      std::uint32_t number, std::string_view title);
    virtual void unregisterHotKey(HotkeyRef ref) = 0;
};

}  // namespace OrvelSystem
