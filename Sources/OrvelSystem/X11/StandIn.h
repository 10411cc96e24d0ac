#pragma once

#include <cstdint>

namespace OrvelSystem {

/// The protocol between the app and its guard for the stand-in: a dark window of the guard's that
/// covers the screen if the app dies during a lock. The app places it, unmapped, under its own
/// overlays and adds it to its save-set. When the app dies, the X server maps the stand-in in the
/// same step in which it removes the app's windows, so the desktop is never visible in between.
struct StandIn {
    /// The selection that the guard owns with the window. Without an owner, there is no guard, or
    /// the guard has no display.
    static constexpr const char selection[] = "_KARVO_STAND_IN";
    /// A property of that window, which the app sets to `Keys` as a CARDINAL. While it is set, the
    /// guard receives every key and click that no active grab takes (`InputNet`). The app sets it
    /// before its overlays appear and removes it at the unlock. Its own grabs change in between,
    /// and end as soon as it dies.
    static constexpr const char takesKeys[] = "_KARVO_STAND_IN_TAKES_KEYS";
    /// Flags that are combined. 0 means that the property is not set.
    enum Keys : std::uint32_t {
        free = 0,
        /// The app is about to take the keyboard.
        wanted = 1,
        /// The app has the keyboard by core grabs, or leaves it to a locker.
        taken = 2,
        /// The app has the keyboard by device grabs, since another client has the core grabs. The
        /// guard must grab every key of the devices passively, or that client would receive the
        /// keys as soon as the app dies. The guard keeps these grabs until `taken` or the unlock.
        takenFromDevices = 4,
        /// The app holds the composite overlay. The guard must hold it too, so that no window can
        /// appear between the app's end and the stand-in.
        underCompositeOverlay = 8,
    };
    /// A property of that window, which the guard sets while its `InputNet` is in place.
    static constexpr const char hasNet[] = "_KARVO_STAND_IN_HAS_NET";
};

}  // namespace OrvelSystem
