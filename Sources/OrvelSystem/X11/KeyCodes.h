#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace OrvelSystem {

/// One key by its place on the keyboard, whatever is printed on it.
struct KeyPlace {
    /// Virtual key code of the Mac keyboard, 0x00 to 0x7E.
    std::uint8_t macKeyCode;
    /// From <linux/input-event-codes.h>.
    std::uint8_t evdevCode;
    /// What key maps call the place, such as "AC01".
    std::string_view xkbName;
};

/// Translates Mac key codes to the keycodes of an X server and back.
class KeyCodes {
  public:
    /// Every key that both keyboards have, each once.
    static std::span<const KeyPlace> places();

    /// `names` tells the keycode of each name in the server's key map. A place that it does not
    /// name is taken to be where Linux servers have it, unless another place is named there.
    explicit KeyCodes(const std::map<std::string, std::uint8_t, std::less<>>& names);

    std::optional<std::uint8_t> xKeycode(std::uint32_t macKeyCode) const;
    std::optional<std::uint32_t> macKeyCode(std::uint32_t xKeycode) const;

    bool operator==(const KeyCodes&) const = default;

  private:
    static constexpr std::uint8_t none = 0xFF;

    void join(const KeyPlace& place, std::uint8_t xKeycode);

    // A keycode of X is 8 or more, so that 0 means none in the one table; a Mac key code is below
    // 0x7F, so that 0xFF means none in the other.
    std::array<std::uint8_t, 0x7F> toX_{};
    std::array<std::uint8_t, 256> toMac_{};
};

}  // namespace OrvelSystem
