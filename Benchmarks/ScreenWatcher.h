#pragma once

#include <cstdint>
#include <vector>

#include "Screen.h"

namespace Measuring {

/// Looks at single pixels all over the screen, which costs the server next to nothing, and asks
/// for grabs on a window that can't have them, which disturbs nobody.
class ScreenWatcher {
  public:
    /// Remembers what the screen shows now.
    explicit ScreenWatcher(DesktopTest::Screen& screen);

    /// Whether none of the watched pixels is what it was with the desktop open.
    bool isCovered();
    /// Most of them, since a title bar looks different without the focus.
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
