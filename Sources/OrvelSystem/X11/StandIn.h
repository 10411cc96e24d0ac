#pragma once

#include <cstdint>

namespace OrvelSystem {

/// What the app and its guard agree on about the stand-in: a dark window of the guard's that covers
/// the screen when the app dies during a lock. The app puts it, unmapped, under its own covers and
/// into its save-set. So it is the X server that maps it, in the same step in which it takes away
/// the windows of an app that is gone, and nothing of the desktop shows in between.
struct StandIn {
    /// The selection that the guard owns with the window. No owner: no guard, or none with a
    /// display.
    static constexpr const char selection[] = "_KARVO_STAND_IN";
    /// A property of that window, `Keys` as a cardinal, which the app sets. While it is
    /// there, every key and click that no active grab takes goes to the guard (`InputNet`). The app
    /// sets it from before its covers come up until the unlock. Its own grabs come and go in
    /// between, and when it dies they go at once.
    static constexpr const char takesKeys[] = "_KARVO_STAND_IN_TAKES_KEYS";
    /// Bits that are combined. 0: the property is not there.
    enum Keys : std::uint32_t {
        free = 0,
        /// The app is about to take the keys.
        wanted = 1,
        /// The app has them by core grabs, or leaves them to a locker.
        taken = 2,
        /// The app has them by grabs of the devices, since another client has the core grabs. The
        /// guard is to grab every key of the devices passively, or that client would hear them as
        /// soon as the app dies. It does so until `taken` or the unlock.
        takenFromDevices = 4,
        /// The app holds the server's overlay window. The guard is to hold it too, so that nothing
        /// can come between the app's end and the stand-in.
        underRoof = 8,
    };
    /// A property of that window, which the guard sets while its `InputNet` is up.
    static constexpr const char hasNet[] = "_KARVO_STAND_IN_HAS_NET";
};

}  // namespace OrvelSystem
