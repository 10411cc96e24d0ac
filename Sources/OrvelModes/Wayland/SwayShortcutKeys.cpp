#include <utility>

#include <xkbcommon/xkbcommon.h>

#include "OrvelModes/Qt/ShortcutKeyWatch.h"
#include "OrvelModes/Wayland/LayerForms.h"
#include "OrvelModes/X11/ShortcutRecorderHooks.h"
#include "OrvelSystem/X11/KeyCodes.h"

namespace OrvelModes {

namespace {

using OrvelCore::Shortcut;
using ShortcutKeyWatch::TypedKey;

std::optional<TypedKey> read(const QKeyEvent& event) {
    const auto keyCode = OrvelSystem::KeyCodes({}).macKeyCode(event.nativeScanCode());
    if (!keyCode) return {};
    TypedKey typed{.keyCode = *keyCode};
    const auto held = event.modifiers();
    if (held.testFlag(Qt::MetaModifier)) typed.modifiers |= Shortcut::Modifiers::command;
    if (held.testFlag(Qt::AltModifier)) typed.modifiers |= Shortcut::Modifiers::option;
    if (held.testFlag(Qt::ControlModifier)) typed.modifiers |= Shortcut::Modifiers::control;
    if (held.testFlag(Qt::ShiftModifier)) typed.modifiers |= Shortcut::Modifiers::shift;
    // The key symbol is the one with Shift, and without the other modifiers.
    if (const auto character = xkb_keysym_to_utf32(event.nativeVirtualKey()); character >= ' ')
        typed.characters =
            QString::fromUcs4(reinterpret_cast<const char32_t*>(&character), 1).toStdString();
    return typed;
}

}  // namespace

ShortcutRecorder::Hooks waylandShortcutRecorder(std::function<AppWindow*()> window,
                                                std::function<void()> pause,
                                                std::function<void()> resume) {
    return ShortcutKeyWatch::hooks(
        [window = std::move(window)] { return ShortcutRecorderHooks::widgetOf(window()); }, read,
        std::move(pause), std::move(resume));
}

}  // namespace OrvelModes
