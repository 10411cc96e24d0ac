#include "OrvelModes/X11/ShortcutRecorderHooks.h"

#include <utility>

#include "OrvelModes/Qt/ShortcutKeyWatch.h"
#include "OrvelModes/X11/LiveAppWindow.h"
#include "OrvelSystem/X11/X11.h"
#include "OrvelSystem/X11/X11KeyMap.h"

namespace OrvelModes::ShortcutRecorderHooks {

namespace {

using OrvelSystem::X11;
using OrvelSystem::X11KeyMap;
using ShortcutKeyWatch::TypedKey;

std::optional<TypedKey> read(const QKeyEvent& event) {
    const X11KeyMap map = X11KeyMap::read(X11::shared());
    const auto keyCode = map.keyCodes().macKeyCode(event.nativeScanCode());
    if (!keyCode) return {};
    const auto state = event.nativeModifiers();
    const auto keycode = static_cast<xcb_keycode_t>(event.nativeScanCode());
    return TypedKey{*keyCode, map.modifiers(state),
                    map.charactersIgnoringModifiers(keycode, state)};
}

}  // namespace

ShortcutRecorder::Hooks live(std::function<QWidget*()> window, std::function<void()> pause,
                             std::function<void()> resume) {
    return ShortcutKeyWatch::hooks(std::move(window), read, std::move(pause), std::move(resume));
}

QWidget* widgetOf(AppWindow* window) {
    auto* const live = dynamic_cast<LiveAppWindow*>(window);
    return live == nullptr ? nullptr : &live->widget();
}

}  // namespace OrvelModes::ShortcutRecorderHooks

namespace OrvelModes {

ShortcutRecorder::Hooks ShortcutRecorder::Hooks::live(std::function<AppWindow*()> window,
                                                      std::function<void()> pause,
                                                      std::function<void()> resume) {
    return ShortcutRecorderHooks::live(
        [window = std::move(window)] { return ShortcutRecorderHooks::widgetOf(window()); },
        std::move(pause), std::move(resume));
}

}  // namespace OrvelModes
