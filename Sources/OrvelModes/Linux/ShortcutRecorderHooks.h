#pragma once

#include <functional>

#include "OrvelModes/ShortcutRecorder.h"

class QWidget;

namespace OrvelModes::ShortcutRecorderHooks {

/// Watches the keys of `window`, a top-level widget, which must outlive the watch. Keys taken there
/// reach nothing else, the window's own shortcuts included. Watching must end when the window
/// closes or is no longer the active one, and when the app is no longer active.
ShortcutRecorder::Hooks live(QWidget& window, std::function<void()> pause,
                             std::function<void()> resume);

}  // namespace OrvelModes::ShortcutRecorderHooks
