#pragma once

#include <chrono>

namespace OrvelSystem {

/// Seconds on the monotonic clock, which stands still while the machine sleeps. For code without a
/// `MainLoop`.
inline double uptime() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace OrvelSystem
