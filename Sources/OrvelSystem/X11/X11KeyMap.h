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

/// The server's key map as it was when read, as far as shortcuts need it. Command is Super,
/// Option is Alt.
class X11KeyMap {
  public:
    /// What the server could not tell is missing: places are then where Linux servers have them,
    /// and there is neither Command nor Option.
    static X11KeyMap read(X11& x11);
    /// Whether the event says that the map may be another one now.
    static bool isChange(X11& x11, const xcb_generic_event_t& event);

    const KeyCodes& keyCodes() const { return keyCodes_; }
    /// Modifier bits of X; nothing when the keyboard has no bit for one of them.
    std::optional<std::uint8_t> bits(OrvelCore::Shortcut::Modifiers modifiers) const;
    /// What the state field of an event holds of the four modifiers.
    OrvelCore::Shortcut::Modifiers modifiers(std::uint32_t state) const;
    /// Bits of Caps Lock, Num Lock and Scroll Lock, none of which is a bit of the four modifiers.
    std::uint8_t lockBits() const { return lockBits_; }
    /// What the key types with Shift as in `state`, in its keyboard layout, and with no other
    /// modifier. Nothing for a key that types nothing.
    std::optional<std::string> charactersIgnoringModifiers(xcb_keycode_t keycode,
                                                           std::uint32_t state) const;

    /// Whether shortcuts have the same keys in both; what the keys type is not compared.
    bool hasSameKeys(const X11KeyMap& other) const;

  private:
    X11KeyMap(KeyCodes keyCodes, std::shared_ptr<xkb_keymap> keymap);

    KeyCodes keyCodes_;
    std::shared_ptr<xkb_keymap> keymap_;  // Null when the server gave none.
    std::uint8_t command_ = 0;
    std::uint8_t option_ = 0;
    std::uint8_t lockBits_ = XCB_MOD_MASK_LOCK;
};

}  // namespace OrvelSystem
