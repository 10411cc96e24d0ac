#include "OrvelApp/Guard/X11/StandInInput.h"

#include <clocale>
#include <cstring>
#include <utility>

#include <xcb/xinput.h>
#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace OrvelApp {

void StandInInput::Free::operator()(xkb_context* context) const {
    xkb_context_unref(context);
}
void StandInInput::Free::operator()(xkb_keymap* keymap) const {
    xkb_keymap_unref(keymap);
}
void StandInInput::Free::operator()(xkb_state* state) const {
    xkb_state_unref(state);
}
void StandInInput::Free::operator()(xkb_compose_table* table) const {
    xkb_compose_table_unref(table);
}
void StandInInput::Free::operator()(xkb_compose_state* state) const {
    xkb_compose_state_unref(state);
}

StandInInput::StandInInput(xcb_connection_t* connection, xcb_window_t root)
    : connection_(connection),
      devices_(connection, root),
      net_(connection, root),
      context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
    xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION,
                                XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS,
                                nullptr, nullptr, nullptr, nullptr);
    devices_.watchHierarchy();
    if (!context_) return;
    const char* const locale = std::setlocale(LC_CTYPE, "");
    composeTable_.reset(xkb_compose_table_new_from_locale(context_.get(), locale ? locale : "C",
                                                          XKB_COMPOSE_COMPILE_NO_FLAGS));
    if (composeTable_)
        compose_.reset(xkb_compose_state_new(composeTable_.get(), XKB_COMPOSE_STATE_NO_FLAGS));
}

StandInInput::~StandInInput() = default;

void StandInInput::grabDevices() {
    hasDevices_ = true;
    devices_.grabPassively(true);
}

void StandInInput::catchDevices() {
    if (!hasDevices_) grabDevices();
}

void StandInInput::takeDevices() {
    if (std::exchange(hasClosedMenus_, true)) return;
    // From here on no key of the hardware reaches the other client.
    catchDevices();
    devices_.letFakedInputPass();
    devices_.fake().tapNeutralKey();
    devices_.fake().releaseKeys();
    devices_.fake().pressEscape();
    grabDevices();
}

void StandInInput::letDevicesGo() {
    hasClosedMenus_ = false;
    if (std::exchange(hasDevices_, false)) devices_.grabPassively(false);
}

void StandInInput::releasePressed() {
    devices_.fake().releaseKeys();
    devices_.fake().releaseButtons();
}

/// Read at the first key of each password, because layouts change during the guard's long life.
void StandInInput::readKeymap() {
    if (!context_) return;
    const auto device = xkb_x11_get_core_keyboard_device_id(connection_);
    keymap_.reset(xkb_x11_keymap_new_from_device(context_.get(), connection_, device,
                                                 XKB_KEYMAP_COMPILE_NO_FLAGS));
    state_.reset(keymap_ ? xkb_state_new(keymap_.get()) : nullptr);
}

bool StandInInput::read(const xcb_generic_event_t& event, Key& key) {
    if (event.response_type != XCB_GE_GENERIC) return false;
    if (devices_.isHierarchyChange(event)) {
        if (hasDevices_) grabDevices();
        return false;
    }
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (devices_.opcode() == 0 || generic.extension != devices_.opcode() ||
        generic.event_type != XCB_INPUT_KEY_PRESS)
        return false;
    const auto& press = reinterpret_cast<const xcb_input_key_press_event_t&>(event);
    key = {};
    if (!state_) readKeymap();
    if (!state_) return true;
    xkb_state_update_mask(state_.get(), press.mods.base, press.mods.latched, press.mods.locked,
                          press.group.base, press.group.latched, press.group.locked);
    auto symbol = xkb_state_key_get_one_sym(state_.get(), press.detail);
    char text[64] = {};
    if (compose_ && xkb_compose_state_feed(compose_.get(), symbol) == XKB_COMPOSE_FEED_ACCEPTED) {
        switch (xkb_compose_state_get_status(compose_.get())) {
            case XKB_COMPOSE_COMPOSING:
            case XKB_COMPOSE_CANCELLED:
                return true;
            case XKB_COMPOSE_COMPOSED:
                symbol = xkb_compose_state_get_one_sym(compose_.get());
                xkb_compose_state_get_utf8(compose_.get(), text, sizeof text);
                break;
            case XKB_COMPOSE_NOTHING:
                break;
        }
    }
    if (text[0] == '\0') xkb_state_key_get_utf8(state_.get(), press.detail, text, sizeof text);
    switch (symbol) {
        case XKB_KEY_Return:
        case XKB_KEY_KP_Enter:
            key.kind = Key::Kind::enter;
            // The layout may have changed by the next time.
            state_.reset();
            break;
        case XKB_KEY_BackSpace:
            key.kind = Key::Kind::erase;
            break;
        case XKB_KEY_Escape:
            key.kind = Key::Kind::clear;
            break;
        default:
            if (static_cast<unsigned char>(text[0]) < 0x20 || text[0] == 0x7F) break;
            key.kind = Key::Kind::text;
            key.text = text;
    }
    explicit_bzero(text, sizeof text);
    return true;
}

}  // namespace OrvelApp
