#pragma once

#include <functional>

#include "OrvelModes/Windows/ShortcutRecorder.h"

class QWidget;

namespace OrvelModes::ShortcutRecorderHooks {

/// See `ShortcutKeyWatch::hooks`.
ShortcutRecorder::Hooks live(std::function<QWidget*()> window, std::function<void()> pause,
                             std::function<void()> resume);
/// The widget of a live window; null for null.
QWidget* widgetOf(AppWindow* window);

}  // namespace OrvelModes::ShortcutRecorderHooks
