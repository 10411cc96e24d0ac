#include "OrvelSystem/X11/FakedInput.h"

#include <algorithm>
#include <cstddef>

#include <X11/keysym.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include "OrvelSystem/X11/XReply.h"

namespace OrvelSystem {

namespace {

bool hasXTest(xcb_connection_t* connection) {
    const auto* const test = xcb_get_extension_data(connection, &xcb_test_id);
    return test && test->present;
}

}  // namespace

FakedInput::FakedInput(xcb_connection_t* connection, xcb_window_t root)
    : connection_(connection), root_(root), isAvailable_(hasXTest(connection)) {}

void FakedInput::fake(std::uint8_t type, std::uint8_t detail) {
    xcb_test_fake_input(connection_, type, detail, XCB_CURRENT_TIME, root_, 0, 0, 0);
}

/// Taps a key without a symbol, which no program interprets, or the right Control key on a keyboard
/// that has a symbol on every key.
void FakedInput::tapNeutralKey() {
    if (!isAvailable_) return;
    const auto* const setup = xcb_get_setup(connection_);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const XReply<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        connection_, xcb_get_keyboard_mapping(connection_, setup->min_keycode, count), nullptr));
    const int width = mapping ? mapping->keysyms_per_keycode : 0;
    const auto* const symbols =
        width > 0 ? xcb_get_keyboard_mapping_keysyms(mapping.get()) : nullptr;
    for (int key = count - 1; width > 0 && key >= 0; --key) {
        const auto* const first = symbols + static_cast<std::ptrdiff_t>(key) * width;
        if (std::any_of(first, first + width, [](auto symbol) { return symbol != 0; })) continue;
        const auto code = static_cast<std::uint8_t>(setup->min_keycode + key);
        fake(XCB_KEY_PRESS, code);
        fake(XCB_KEY_RELEASE, code);
        return;
    }
    tap(XK_Control_R);
}

void FakedInput::tap(std::uint32_t keysym) {
    auto* const symbols = xcb_key_symbols_alloc(connection_);
    const XReply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, keysym));
    xcb_key_symbols_free(symbols);
    if (!codes || *codes == XCB_NO_SYMBOL) return;
    fake(XCB_KEY_PRESS, *codes);
    fake(XCB_KEY_RELEASE, *codes);
}

void FakedInput::releaseKey(xcb_keycode_t code) {
    if (!isAvailable_) return;
    fake(XCB_KEY_RELEASE, code);
    xcb_flush(connection_);
}

void FakedInput::releaseKeys() {
    if (!isAvailable_) return;
    const XReply<xcb_query_keymap_reply_t> down(
        xcb_query_keymap_reply(connection_, xcb_query_keymap(connection_), nullptr));
    if (!down) return;
    for (unsigned code = 8; code < 256; ++code) {
        if (down->keys[code / 8] >> (code % 8) & 1)
            fake(XCB_KEY_RELEASE, static_cast<std::uint8_t>(code));
    }
}

void FakedInput::pressEscape() {
    if (!isAvailable_) return;
    tap(XK_Escape);
    xcb_flush(connection_);
}

void FakedInput::releaseButtons() {
    if (!isAvailable_) return;
    const XReply<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(connection_, xcb_query_pointer(connection_, root_), nullptr));
    if (!pointer) return;
    for (std::uint8_t button = 1; button <= 5; ++button) {
        if (pointer->mask & (XCB_BUTTON_MASK_1 << (button - 1))) fake(XCB_BUTTON_RELEASE, button);
    }
    xcb_flush(connection_);
}

}  // namespace OrvelSystem
