#pragma once

namespace OrvelSystem {

/// The user's absence, as the X server counts it. Main thread only.
struct InputIdle {
    /// Since the last input of any device; 0 where the server does not count.
    static double seconds();
};

}  // namespace OrvelSystem
