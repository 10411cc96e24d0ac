#pragma once

namespace OrvelSystem {

/// The time since the user's last input, as the X server measures it. Main thread only.
struct InputIdle {
    /// Seconds since the last input on any device; 0 if the server does not measure it.
    static double seconds();
};

}  // namespace OrvelSystem
