#pragma once

#include <functional>

#include "OrvelModes/Windows/ShortcutRecorder.h"

class QWidget;

namespace OrvelModes::ShortcutRecorderHooks {

/// Watches the keys of the top-level widget that `window` gives when a recording starts, which must
/// outlive the watch; for null nothing is watched. Keys taken there reach nothing else, the
/// window's own shortcuts included. Watching must end when the window closes or is no longer the
/// active one, and when the app is no longer active.
ShortcutRecorder::Hooks live(std::function<QWidget*()> window, std::function<void()> pause,
                             std::function<void()> resume);

}  // namespace OrvelModes::ShortcutRecorderHooks
