#include "OrvelSystem/Wayland/KeyNames.h"

#include <QList>
#include <QString>
#include <memory>

#include <xkbcommon/xkbcommon.h>

namespace OrvelSystem {

namespace {

std::string keysymName(xkb_keysym_t symbol) {
    char name[64] = "";
    if (xkb_keysym_get_name(symbol, name, sizeof(name)) < 0) return {};
    return name;
}

std::string nameAtPosition(std::uint32_t xKeycode) {
    struct Deleter {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_state* state) const { xkb_state_unref(state); }
    };
    const std::unique_ptr<xkb_context, Deleter> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (!context) return {};
    const std::unique_ptr<xkb_keymap, Deleter> keymap(
        xkb_keymap_new_from_names(context.get(), nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) return {};
    const std::unique_ptr<xkb_state, Deleter> state(xkb_state_new(keymap.get()));
    const auto symbol = xkb_state_key_get_one_sym(state.get(), xKeycode);
    return symbol == XKB_KEY_NoSymbol ? std::string() : keysymName(symbol);
}

}  // namespace

std::string xkbKeyName(const OrvelCore::Shortcut& shortcut, std::uint32_t xKeycode) {
    const auto label = QString::fromStdString(shortcut.key).toLower().toUcs4();
    if (label.size() == 1 && QChar::isLetter(label.front()))
        return keysymName(xkb_utf32_to_keysym(label.front()));
    return nameAtPosition(xKeycode);
}

}  // namespace OrvelSystem
