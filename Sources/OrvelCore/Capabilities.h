#pragma once

namespace OrvelCore {

/// What the session lets this program do. What it does not is refused at every door, and neither
/// the menus nor Settings offer it.
struct Capabilities {
    /// A lock of the computer of the program's own. Without it the session's own lock is asked for.
    bool ownLock = true;
    /// Covers over the windows of single apps: app lock and private apps.
    bool appCovers = true;
    bool focusBlur = true;
    bool screenBlur = true;
    /// Keyboard shortcuts that reach the program from anywhere.
    bool shortcuts = true;
    bool hotCorners = true;
    /// How long nobody has touched the computer.
    bool idleTime = true;
    /// A panel under the status item; else there is its menu alone.
    bool menuPanel = true;

    bool operator==(const Capabilities&) const = default;
};

}  // namespace OrvelCore
