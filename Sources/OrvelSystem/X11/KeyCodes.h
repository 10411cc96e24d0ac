#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace OrvelSystem {

/// A key identified by its position on the keyboard, independent of its label.
struct KeyPlace {
    /// Virtual key code of the Mac keyboard, 0x00 to 0x7E.
    std::uint8_t macKeyCode;
    /// From <linux/input-event-codes.h>.
    std::uint8_t evdevCode;
    /// The name of the position in XKB key maps, such as "AC01".
    std::string_view xkbName;
};

/// Translates Mac key codes to the keycodes of an X server and back.
class KeyCodes {
  public:
    /// Every key that both keyboards have, each once.
    static std::span<const KeyPlace> places();

    /// `names` maps the XKB names in the server's key map to keycodes. A position without a name
    /// gets the usual keycode of Linux servers, unless a named position has that keycode.
    explicit KeyCodes(const std::map<std::string, std::uint8_t, std::less<>>& names);

    /// Both return `nullopt` for a key that the other keyboard does not have.
    std::optional<std::uint8_t> xKeycode(std::uint32_t macKeyCode) const;
    std::optional<std::uint32_t> macKeyCode(std::uint32_t xKeycode) const;

    bool operator==(const KeyCodes&) const = default;

  private:
    static constexpr std::uint8_t none = 0xFF;

    void join(const KeyPlace& place, std::uint8_t xKeycode);

    // X keycodes are at least 8, so 0 means none in `toX_`; Mac key codes are below 0x7F, so 0xFF
    // means none in `toMac_`.
    std::array<std::uint8_t, 0x7F> toX_{};
    std::array<std::uint8_t, 256> toMac_{};
};

}  // namespace OrvelSystem
