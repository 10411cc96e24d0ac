#pragma once

namespace OrvelCore {

/// What the session permits this program to do. Everything else is refused wherever it is
/// requested, and neither the menus nor Settings offer it.
struct Capabilities {
    /// A computer lock of this program. If false, the session's own lock is requested instead.
    bool ownLock = true;
    /// Covers over the windows of other apps, which app lock and private apps need.
    bool appCovers = true;
    /// App lock and private apps remove the windows from the screen instead of covering them. A
    /// window is asked for by taking it out of the compositor's scratchpad.
    bool hidesApps = false;
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

/// What a Wayland compositor offers. Every value is false if the session has no such service.
struct CompositorOffers {
    bool sessionLock = false;
    bool layerShell = false;
    bool idleNotifier = false;
    bool isSway = false;
    /// The desktop portal for global shortcuts.
    bool shortcutsPortal = false;
};

/// An X11 session and macOS permit everything.
constexpr Capabilities capabilities(const CompositorOffers& offers) {
    return {.ownLock = offers.sessionLock,
            // The card of an app that is asked for needs a layer surface.
            .appCovers = offers.isSway && offers.layerShell,
            .hidesApps = offers.isSway,
            // No compositor reports each move of a window, so an opening for it would show others.
            .focusBlur = false,
            .screenBlur = offers.layerShell,
            .shortcuts = offers.isSway || offers.shortcutsPortal,
            .hotCorners = offers.layerShell,
            .idleTime = offers.idleNotifier,
            .menuPanel = offers.layerShell};
}

}  // namespace OrvelCore
