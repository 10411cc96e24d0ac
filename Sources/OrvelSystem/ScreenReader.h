#pragma once

namespace OrvelSystem {

/// The program that reads the screen to those who hear it.
struct ScreenReader {
    /// Followed from the first call on, which itself says false. Main thread only.
    static bool isOn();
};

}  // namespace OrvelSystem
