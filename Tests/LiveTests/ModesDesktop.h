#pragma once

#include "OrvelSystem/Qt/QtMainLoop.h"
#include "OrvelSystem/X11/X11.h"

#include "Live.h"

/// The live forms of the modes in this process, with a window manager.
class ModesDesktopTest : public LiveTest {
  protected:
    ModesDesktopTest() {
        startWindowManager();
        screen().paintBackground(testPattern(800, 600));
        screen().movePointer(200, 500);
        screen().sync();
    }

    static xcb_window_t top() { return screen().mappedWindows().back(); }
    static bool isOurs(xcb_window_t window) {
        const auto* const setup = xcb_get_setup(X11::shared().connection());
        return (window & ~setup->resource_id_mask) == setup->resource_id_base;
    }

    QtMainLoop loop;
};
