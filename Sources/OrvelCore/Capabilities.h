#pragma once

namespace OrvelCore {

/// What the session permits this program to do. Everything else is refused wherever it is
/// requested, and neither the menus nor Settings offer it.
struct Capabilities {
    /// A computer lock of this program. If false, the session's own lock is requested instead.
    bool ownLock = true;
    /// Covers over the windows of other apps, which app lock and private apps need.
    bool appCovers = true;
    bool focusBlur = true;
    bool screenBlur = true;
    /// Global keyboard shortcuts.
    bool shortcuts = true;
    bool hotCorners = true;
    /// The time since the last input.
    bool idleTime = true;
    /// A panel at the status item. If false, the item has only its menu.
    bool menuPanel = true;

    bool operator==(const Capabilities&) const = default;
};

}  // namespace OrvelCore
