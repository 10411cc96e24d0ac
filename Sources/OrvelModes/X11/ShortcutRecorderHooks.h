#pragma once

#include <functional>

#include "OrvelModes/Windows/ShortcutRecorder.h"

class QWidget;

namespace OrvelModes::ShortcutRecorderHooks {

/// Watches the keys of the top-level widget that `window` returns when a recording starts; nothing
/// is watched if that is null. The widget must outlive the watch. Watched keys reach nothing else,
/// including the window's own shortcuts. The end is reported when the window closes or becomes
/// inactive, and when the app becomes inactive.
ShortcutRecorder::Hooks live(std::function<QWidget*()> window, std::function<void()> pause,
                             std::function<void()> resume);

}  // namespace OrvelModes::ShortcutRecorderHooks
