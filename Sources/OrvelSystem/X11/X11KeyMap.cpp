#include "OrvelSystem/X11/X11KeyMap.h"

#include <initializer_list>
#include <map>

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include "OrvelSystem/X11/X11.h"

// This C header has a field named `explicit`, which is a C++ keyword.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace OrvelSystem {

using OrvelCore::Shortcut;

namespace {

std::shared_ptr<xkb_keymap> readKeymap(xcb_connection_t* connection) {
    const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(
        xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES), xkb_context_unref);
    const auto device = xkb_x11_get_core_keyboard_device_id(connection);
    if (!context || device < 0) return {};
    xkb_keymap* const keymap = xkb_x11_keymap_new_from_device(context.get(), connection, device,
                                                              XKB_KEYMAP_COMPILE_NO_FLAGS);
    if (!keymap) return {};
    return {keymap, xkb_keymap_unref};
}

KeyCodes readKeyCodes(xkb_keymap* keymap) {
    std::map<std::string, std::uint8_t, std::less<>> names;
    if (!keymap) return KeyCodes(names);
    for (const KeyPlace& place : KeyCodes::places()) {
        const std::string name(place.xkbName);
        const auto keycode = xkb_keymap_key_by_name(keymap, name.c_str());
        if (keycode != XKB_KEYCODE_INVALID && keycode <= 0xFF)
            names.emplace(name, static_cast<std::uint8_t>(keycode));
    }
    return KeyCodes(names);
}

bool types(xkb_keymap* keymap, xcb_keycode_t keycode, std::initializer_list<xkb_keysym_t> wanted) {
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts_for_key(keymap, keycode);
         ++layout) {
        const auto levels = xkb_keymap_num_levels_for_key(keymap, keycode, layout);
        for (xkb_level_index_t level = 0; level < levels; ++level) {
            const xkb_keysym_t* symbols = nullptr;
            const int count =
                xkb_keymap_key_get_syms_by_level(keymap, keycode, layout, level, &symbols);
            for (int i = 0; i < count; ++i) {
                for (const xkb_keysym_t symbol : wanted) {
                    if (symbols[i] == symbol) return true;
                }
            }
        }
    }
    return false;
}

/// The first of Mod1 to Mod5 that contains a key with one of the symbols; 0 if none does.
std::uint8_t modifierBit(xkb_keymap* keymap, const xcb_get_modifier_mapping_reply_t* mapping,
                         std::initializer_list<xkb_keysym_t> symbols) {
    if (!keymap || !mapping) return 0;
    const xcb_keycode_t* const keycodes = xcb_get_modifier_mapping_keycodes(mapping);
    const int perModifier = mapping->keycodes_per_modifier;
    for (int modifier = XCB_MAP_INDEX_1; modifier <= XCB_MAP_INDEX_5; ++modifier) {
        for (int i = 0; i < perModifier; ++i) {
            const xcb_keycode_t keycode = keycodes[modifier * perModifier + i];
            if (keycode != 0 && types(keymap, keycode, symbols))
                return static_cast<std::uint8_t>(1 << modifier);
        }
    }
    return 0;
}

/// A dead key types nothing by itself; its label is the accent.
char32_t accent(xkb_keysym_t symbol) {
    switch (symbol) {
        case XKB_KEY_dead_grave:
            return U'`';
        case XKB_KEY_dead_acute:
            return U'´';
        case XKB_KEY_dead_circumflex:
            return U'^';
        case XKB_KEY_dead_tilde:
            return U'~';
        case XKB_KEY_dead_diaeresis:
            return U'¨';
        case XKB_KEY_dead_abovering:
            return U'°';
        case XKB_KEY_dead_caron:
            return U'ˇ';
        case XKB_KEY_dead_cedilla:
            return U'¸';
        default:
            return 0;
    }
}

std::optional<std::string> characters(xkb_keysym_t symbol) {
    if (const char32_t mark = accent(symbol)) symbol = xkb_utf32_to_keysym(mark);
    const std::uint32_t character = xkb_keysym_to_utf32(symbol);
    // Return, Esc and similar keys type control characters, which are not labels.
    if (character < 0x20 || character == 0x7F) return {};
    char text[8] = {};
    if (xkb_keysym_to_utf8(symbol, text, sizeof text) <= 0) return {};
    return text;
}

}  // namespace

X11KeyMap::X11KeyMap(KeyCodes keyCodes, std::shared_ptr<xkb_keymap> keymap)
    : keyCodes_(keyCodes), keymap_(std::move(keymap)) {}

X11KeyMap X11KeyMap::read(X11& x11) {
    xcb_connection_t* const connection = x11.connection();
    const auto mappingCookie = xcb_get_modifier_mapping(connection);
    const auto keymap = readKeymap(connection);
    const XReply<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(connection, mappingCookie, nullptr));
    const auto bit = [&](std::initializer_list<xkb_keysym_t> symbols) {
        return modifierBit(keymap.get(), mapping.get(), symbols);
    };

    X11KeyMap map(readKeyCodes(keymap.get()), keymap);
    map.command_ = bit({XKB_KEY_Super_L, XKB_KEY_Super_R});
    map.option_ = bit({XKB_KEY_Alt_L, XKB_KEY_Alt_R});
    const int locks = XCB_MOD_MASK_LOCK | bit({XKB_KEY_Num_Lock}) | bit({XKB_KEY_Scroll_Lock});
    map.lockBits_ = static_cast<std::uint8_t>(locks & ~(map.command_ | map.option_));
    return map;
}

bool X11KeyMap::isChange(X11& x11, const xcb_generic_event_t& event) {
    const int type = event.response_type;
    if (type == XCB_MAPPING_NOTIFY) return true;
    // Qt selects these events on its connection for its own copy of the map.
    const auto* const extension = xcb_get_extension_data(x11.connection(), &xcb_xkb_id);
    if (!extension || !extension->present || type != extension->first_event) return false;
    const auto xkbType = reinterpret_cast<const xcb_xkb_map_notify_event_t&>(event).xkbType;
    return xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY || xkbType == XCB_XKB_MAP_NOTIFY;
}

std::optional<std::uint8_t> X11KeyMap::bits(Shortcut::Modifiers modifiers) const {
    int bits = 0;
    const auto add = [&](Shortcut::Modifiers flag, int bit) {
        if (!modifiers.contains(flag)) return true;
        bits |= bit;
        return bit != 0;
    };
    if (!add(Shortcut::Modifiers::command, command_)) return {};
    if (!add(Shortcut::Modifiers::option, option_)) return {};
    add(Shortcut::Modifiers::control, XCB_MOD_MASK_CONTROL);
    add(Shortcut::Modifiers::shift, XCB_MOD_MASK_SHIFT);
    return static_cast<std::uint8_t>(bits);
}

Shortcut::Modifiers X11KeyMap::modifiers(std::uint32_t state) const {
    Shortcut::Modifiers held;
    if (state & command_) held |= Shortcut::Modifiers::command;
    if (state & option_) held |= Shortcut::Modifiers::option;
    if (state & XCB_MOD_MASK_CONTROL) held |= Shortcut::Modifiers::control;
    if (state & XCB_MOD_MASK_SHIFT) held |= Shortcut::Modifiers::shift;
    return held;
}

std::optional<std::string> X11KeyMap::charactersIgnoringModifiers(xcb_keycode_t keycode,
                                                                  std::uint32_t state) const {
    if (!keymap_) return {};
    const std::unique_ptr<xkb_state, void (*)(xkb_state*)> keys(xkb_state_new(keymap_.get()),
                                                                xkb_state_unref);
    if (!keys) return {};
    // A core event contains the layout in bits 13 and 14.
    const xkb_layout_index_t layout = (state >> 13) & 3;
    xkb_state_update_mask(keys.get(), state & XCB_MOD_MASK_SHIFT, 0, 0, 0, 0, layout);
    if (auto typed = characters(xkb_state_key_get_one_sym(keys.get(), keycode))) return typed;

    // Without Num Lock the keypad's keys type nothing, but another level contains their digit.
    const auto keyLayout = xkb_state_key_get_layout(keys.get(), keycode);
    if (keyLayout == XKB_LAYOUT_INVALID) return {};
    const auto levels = xkb_keymap_num_levels_for_key(keymap_.get(), keycode, keyLayout);
    for (xkb_level_index_t level = 0; level < levels; ++level) {
        const xkb_keysym_t* symbols = nullptr;
        const int count =
            xkb_keymap_key_get_syms_by_level(keymap_.get(), keycode, keyLayout, level, &symbols);
        if (count != 1) continue;
        if (auto typed = characters(symbols[0])) return typed;
    }
    return {};
}

bool X11KeyMap::hasSameKeys(const X11KeyMap& other) const {
    return keyCodes_ == other.keyCodes_ && command_ == other.command_ && option_ == other.option_ &&
           lockBits_ == other.lockBits_;
}

}  // namespace OrvelSystem
