#pragma once

#include <cstdint>
#include <functional>
#include <optional>

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
    /// `keyCode` is a virtual key code of the Mac keyboard; `modifiers` is a combination of
    /// `CarbonModifiers`. Returns `nullopt` if another program has registered the combination or
    /// the system has no such key.
    virtual std::optional<HotkeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                    std::uint32_t number) = 0;
    /// The same for the combination of `shortcut`. Systems whose hotkeys are named by the label of
    /// the key and not by its position override it.
    virtual std::optional<HotkeyRef> registerShortcut(const OrvelCore::Shortcut& shortcut,
                                                      std::uint32_t modifiers,
                                                      std::uint32_t number) {
        return registerHotKey(shortcut.keyCode, modifiers, number);
    }
    virtual void unregisterHotKey(HotkeyRef ref) = 0;
};

}  // namespace OrvelSystem
