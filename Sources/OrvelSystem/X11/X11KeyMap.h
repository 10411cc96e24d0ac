#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <xcb/xcb.h>

#include "OrvelCore/Shortcut.h"
#include "OrvelSystem/X11/KeyCodes.h"

struct xkb_keymap;

namespace OrvelSystem {

class X11;

/// A snapshot of the server's key map, as far as shortcuts need it. Command is Super, Option is
/// Alt.
class X11KeyMap {
  public:
    /// If the server does not provide the map, keys have the usual keycodes of Linux servers, and
    /// the map has neither Command nor Option.
    static X11KeyMap read(X11& x11);
    /// Whether the event reports that the map may have changed.
    static bool isChange(X11& x11, const xcb_generic_event_t& event);

    const KeyCodes& keyCodes() const { return keyCodes_; }
    /// X modifier bits; `nullopt` if the map has no bit for one of the modifiers.
    std::optional<std::uint8_t> bits(OrvelCore::Shortcut::Modifiers modifiers) const;
    /// Those of the four modifiers that are set in the state field of an event.
    OrvelCore::Shortcut::Modifiers modifiers(std::uint32_t state) const;
    /// Bits of Caps Lock, Num Lock and Scroll Lock, excluding bits of Command and Option.
    std::uint8_t lockBits() const { return lockBits_; }
    /// The text that the key types with Shift and the layout as in `state`, and with no other
    /// modifier. `nullopt` for a key that types nothing.
    std::optional<std::string> charactersIgnoringModifiers(xcb_keycode_t keycode,
                                                           std::uint32_t state) const;

    /// Whether shortcuts use the same keys in both maps; the text that keys type is not compared.
    bool hasSameKeys(const X11KeyMap& other) const;

  private:
    X11KeyMap(KeyCodes keyCodes, std::shared_ptr<xkb_keymap> keymap);

    KeyCodes keyCodes_;
    std::shared_ptr<xkb_keymap> keymap_;  // null if the server provided none
    std::uint8_t command_ = 0;
    std::uint8_t option_ = 0;
    std::uint8_t lockBits_ = XCB_MOD_MASK_LOCK;
};

}  // namespace OrvelSystem
