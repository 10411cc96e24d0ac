#include "OrvelSystem/X11/KeyCodes.h"

#include <vector>

#include <linux/input-event-codes.h>

namespace OrvelSystem {

namespace {

// X servers on Linux use the kernel's key codes plus this offset.
constexpr std::uint8_t evdevOffset = 8;

// The Mac's Fn key (0x3F) is missing, since its Linux code exceeds the range of X keycodes. Where a
// PC keyboard has a different key at a position, the table has the key that a Mac reports for a PC
// keyboard: Insert for Help, Num Lock for Clear, the menu key. F13 to F15 are the keys with these
// names, not Print Screen and its neighbours, which desktops use for other purposes.
constexpr KeyPlace table[] = {
    {0x00, KEY_A, "AC01"},
    {0x01, KEY_S, "AC02"},
    {0x02, KEY_D, "AC03"},
    {0x03, KEY_F, "AC04"},
    {0x04, KEY_H, "AC06"},
    {0x05, KEY_G, "AC05"},
    {0x06, KEY_Z, "AB01"},
    {0x07, KEY_X, "AB02"},
    {0x08, KEY_C, "AB03"},
    {0x09, KEY_V, "AB04"},
    {0x0A, KEY_102ND, "LSGT"},
    {0x0B, KEY_B, "AB05"},
    {0x0C, KEY_Q, "AD01"},
    {0x0D, KEY_W, "AD02"},
    {0x0E, KEY_E, "AD03"},
    {0x0F, KEY_R, "AD04"},
    {0x10, KEY_Y, "AD06"},
    {0x11, KEY_T, "AD05"},
    {0x12, KEY_1, "AE01"},
    {0x13, KEY_2, "AE02"},
    {0x14, KEY_3, "AE03"},
    {0x15, KEY_4, "AE04"},
    {0x16, KEY_6, "AE06"},
    {0x17, KEY_5, "AE05"},
    {0x18, KEY_EQUAL, "AE12"},
    {0x19, KEY_9, "AE09"},
    {0x1A, KEY_7, "AE07"},
    {0x1B, KEY_MINUS, "AE11"},
    {0x1C, KEY_8, "AE08"},
    {0x1D, KEY_0, "AE10"},
    {0x1E, KEY_RIGHTBRACE, "AD12"},
    {0x1F, KEY_O, "AD09"},
    {0x20, KEY_U, "AD07"},
    {0x21, KEY_LEFTBRACE, "AD11"},
    {0x22, KEY_I, "AD08"},
    {0x23, KEY_P, "AD10"},
    {0x24, KEY_ENTER, "RTRN"},
    {0x25, KEY_L, "AC09"},
    {0x26, KEY_J, "AC07"},
    {0x27, KEY_APOSTROPHE, "AC11"},
    {0x28, KEY_K, "AC08"},
    {0x29, KEY_SEMICOLON, "AC10"},
    {0x2A, KEY_BACKSLASH, "BKSL"},
    {0x2B, KEY_COMMA, "AB08"},
    {0x2C, KEY_SLASH, "AB10"},
    {0x2D, KEY_N, "AB06"},
    {0x2E, KEY_M, "AB07"},
    {0x2F, KEY_DOT, "AB09"},
    {0x30, KEY_TAB, "TAB"},
    {0x31, KEY_SPACE, "SPCE"},
    {0x32, KEY_GRAVE, "TLDE"},
    {0x33, KEY_BACKSPACE, "BKSP"},
    {0x35, KEY_ESC, "ESC"},
    {0x36, KEY_RIGHTMETA, "RWIN"},
    {0x37, KEY_LEFTMETA, "LWIN"},
    {0x38, KEY_LEFTSHIFT, "LFSH"},
    {0x39, KEY_CAPSLOCK, "CAPS"},
    {0x3A, KEY_LEFTALT, "LALT"},
    {0x3B, KEY_LEFTCTRL, "LCTL"},
    {0x3C, KEY_RIGHTSHIFT, "RTSH"},
    {0x3D, KEY_RIGHTALT, "RALT"},
    {0x3E, KEY_RIGHTCTRL, "RCTL"},
    {0x40, KEY_F17, "FK17"},
    {0x41, KEY_KPDOT, "KPDL"},
    {0x43, KEY_KPASTERISK, "KPMU"},
    {0x45, KEY_KPPLUS, "KPAD"},
    {0x47, KEY_NUMLOCK, "NMLK"},
    {0x48, KEY_VOLUMEUP, "VOL+"},
    {0x49, KEY_VOLUMEDOWN, "VOL-"},
    {0x4A, KEY_MUTE, "MUTE"},
    {0x4B, KEY_KPSLASH, "KPDV"},
    {0x4C, KEY_KPENTER, "KPEN"},
    {0x4E, KEY_KPMINUS, "KPSU"},
    {0x4F, KEY_F18, "FK18"},
    {0x50, KEY_F19, "FK19"},
    {0x51, KEY_KPEQUAL, "KPEQ"},
    {0x52, KEY_KP0, "KP0"},
    {0x53, KEY_KP1, "KP1"},
    {0x54, KEY_KP2, "KP2"},
    {0x55, KEY_KP3, "KP3"},
    {0x56, KEY_KP4, "KP4"},
    {0x57, KEY_KP5, "KP5"},
    {0x58, KEY_KP6, "KP6"},
    {0x59, KEY_KP7, "KP7"},
    {0x5A, KEY_F20, "FK20"},
    {0x5B, KEY_KP8, "KP8"},
    {0x5C, KEY_KP9, "KP9"},
    {0x5D, KEY_YEN, "AE13"},
    {0x5E, KEY_RO, "AB11"},
    {0x5F, KEY_KPCOMMA, "I129"},
    {0x60, KEY_F5, "FK05"},
    {0x61, KEY_F6, "FK06"},
    {0x62, KEY_F7, "FK07"},
    {0x63, KEY_F3, "FK03"},
    {0x64, KEY_F8, "FK08"},
    {0x65, KEY_F9, "FK09"},
    // The two keys beside the space bar of a Japanese keyboard, with the codes that Apple's
    // keyboards report.
    {0x66, KEY_HANJA, "HJCV"},
    {0x67, KEY_F11, "FK11"},
    {0x68, KEY_HANGEUL, "HNGL"},
    {0x69, KEY_F13, "FK13"},
    {0x6A, KEY_F16, "FK16"},
    {0x6B, KEY_F14, "FK14"},
    {0x6D, KEY_F10, "FK10"},
    {0x6E, KEY_COMPOSE, "COMP"},
    {0x6F, KEY_F12, "FK12"},
    {0x71, KEY_F15, "FK15"},
    {0x72, KEY_INSERT, "INS"},
    {0x73, KEY_HOME, "HOME"},
    {0x74, KEY_PAGEUP, "PGUP"},
    {0x75, KEY_DELETE, "DELE"},
    {0x76, KEY_F4, "FK04"},
    {0x77, KEY_END, "END"},
    {0x78, KEY_F2, "FK02"},
    {0x79, KEY_PAGEDOWN, "PGDN"},
    {0x7A, KEY_F1, "FK01"},
    {0x7B, KEY_LEFT, "LEFT"},
    {0x7C, KEY_RIGHT, "RGHT"},
    {0x7D, KEY_DOWN, "DOWN"},
    {0x7E, KEY_UP, "UP"},
};

}  // namespace

std::span<const KeyPlace> KeyCodes::places() {
    return table;
}

KeyCodes::KeyCodes(const std::map<std::string, std::uint8_t, std::less<>>& names) {
    toMac_.fill(none);
    std::vector<KeyPlace> unnamed;
    for (const KeyPlace& place : places()) {
        const auto named = names.find(place.xkbName);
        if (named == names.end())
            unnamed.push_back(place);
        else
            join(place, named->second);
    }
    for (const KeyPlace& place : unnamed) {
        const auto usual = static_cast<std::uint8_t>(place.evdevCode + evdevOffset);
        if (toMac_[usual] == none) join(place, usual);
    }
}

std::optional<std::uint8_t> KeyCodes::xKeycode(std::uint32_t macKeyCode) const {
    if (macKeyCode >= toX_.size() || toX_[macKeyCode] == 0) return {};
    return toX_[macKeyCode];
}

std::optional<std::uint32_t> KeyCodes::macKeyCode(std::uint32_t xKeycode) const {
    if (xKeycode >= toMac_.size() || toMac_[xKeycode] == none) return {};
    return toMac_[xKeycode];
}

void KeyCodes::join(const KeyPlace& place, std::uint8_t xKeycode) {
    toX_[place.macKeyCode] = xKeycode;
    toMac_[xKeycode] = place.macKeyCode;
}

}  // namespace OrvelSystem
