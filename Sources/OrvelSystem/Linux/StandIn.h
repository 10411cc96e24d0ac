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
    /// A property of that window, one of `Keys` as a cardinal, which the app sets. While it is
    /// there, every key and click that no active grab takes goes to the guard (`InputNet`). The app
    /// sets it from before its covers come up until the unlock. Its own grabs come and go in
    /// between, and when it dies they go at once.
    static constexpr const char takesKeys[] = "_KARVO_STAND_IN_TAKES_KEYS";
    enum class Keys : std::uint32_t {
        free,  // the property is not there
        taken,
        /// And the app holds the server's overlay window. The guard is to hold it too, so that
        /// nothing can come between the app's end and the stand-in.
        takenUnderRoof,
    };
    /// A property of that window, which the guard sets while its `InputNet` is up.
    static constexpr const char hasNet[] = "_KARVO_STAND_IN_HAS_NET";
};

}  // namespace OrvelSystem
