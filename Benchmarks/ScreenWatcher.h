#pragma once

#include <cstdint>
#include <vector>

#include "Screen.h"

namespace Measuring {

/// Samples single pixels all over the screen, which is cheap for the server. To test for grabs, it
/// requests them for an unmapped window, which the server refuses, so nothing is disturbed.
class ScreenWatcher {
  public:
    /// Stores the current pixels as those of the open desktop.
    explicit ScreenWatcher(DesktopTest::Screen& screen);

    /// Whether no watched pixel equals that of the open desktop.
    bool isCovered();
    /// Whether at least three quarters of the watched pixels equal those of the open desktop. A
    /// title bar may differ because its window has no focus.
    bool isOpen();
    bool isGrabbed();

  private:
    struct Point {
        int x;
        int y;
    };

    std::vector<std::uint32_t> look();

    DesktopTest::Screen& screen_;
    xcb_connection_t* connection_;
    xcb_window_t unmapped_;
    std::vector<Point> points_;
    std::vector<std::uint32_t> open_;
};

}  // namespace Measuring
