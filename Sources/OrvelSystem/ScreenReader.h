#pragma once

namespace OrvelSystem {

/// The program that reads the screen aloud.
struct ScreenReader {
    /// On Linux, the first call starts to follow the setting and returns false. Main thread only.
    static bool isOn();
};

}  // namespace OrvelSystem
