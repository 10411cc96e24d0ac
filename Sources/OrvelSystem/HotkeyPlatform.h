#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace OrvelSystem {

/// Modifier bits as the hotkey service takes them.
namespace CarbonModifiers {
constexpr std::uint32_t command = 0x100;
constexpr std::uint32_t shift = 0x200;
constexpr std::uint32_t option = 0x800;
constexpr std::uint32_t control = 0x1000;
}  // namespace CarbonModifiers

/// The system's handle of one registered hotkey.
using HotkeyRef = std::uintptr_t;

/// The system's service for global hotkeys. Main thread only.
class HotkeyPlatform {
  public:
    /// The four characters "ORVL", for systems on which a hotkey's number counts only together
    /// with a mark of its program.
    static constexpr std::uint32_t signature = 0x4F52564C;

    virtual ~HotkeyPlatform() = default;

    /// From now on every press of a registered hotkey calls `pressed` with its number, once per
    /// press and on the main thread.
    virtual void installEventHandler(std::function<void(std::uint32_t number)> pressed) = 0;
    /// `keyCode` is a virtual key code of the Mac keyboard, `modifiers` are `CarbonModifiers`.
    /// Nothing when another program holds the combination, or the system has no such key.
    virtual std::optional<HotkeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                    std::uint32_t number) = 0;
    virtual void unregisterHotKey(HotkeyRef ref) = 0;
};

}  // namespace OrvelSystem
