#pragma once

#include <string>

namespace OrvelSystem {

/// The thread that calls.
struct CurrentThread {
    enum class Urgency {
        userWaits,  ///< The user waits for the result.
        inBackground,
    };

    /// Sets the name that debuggers show, and tells the system how urgent the thread's work is.
    /// Linux keeps the first 15 bytes after the last dot of the name, and ignores the urgency.
    static void describe(const std::string& name, Urgency urgency);
};

}  // namespace OrvelSystem
