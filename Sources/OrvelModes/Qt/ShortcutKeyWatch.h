#pragma once

#include <QKeyEvent>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "OrvelModes/Windows/ShortcutRecorder.h"

class QWidget;

namespace OrvelModes::ShortcutKeyWatch {

/// A key press as `ShortcutRecorder::OnKey` takes it.
struct TypedKey {
    std::uint32_t keyCode = 0;
    OrvelCore::Shortcut::Modifiers modifiers;
    std::optional<std::string> characters;
};
/// `nullopt` for a key that the Mac keyboard does not have.
using ReadKey = std::function<std::optional<TypedKey>(const QKeyEvent&)>;

/// Watches the keys of the top-level widget that `window` returns when a recording starts; nothing
/// is watched if that is null. The widget must outlive the watch. Watched keys reach nothing else,
/// including the window's own shortcuts. The end is reported when the window closes or becomes
/// inactive, and when the app becomes inactive.
ShortcutRecorder::Hooks hooks(std::function<QWidget*()> window, ReadKey read,
                              std::function<void()> pause, std::function<void()> resume);

}  // namespace OrvelModes::ShortcutKeyWatch
