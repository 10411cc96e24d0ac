#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "OrvelSystem/Linux/QtMainLoop.h"

#include "Desktop/Process.h"
#include "Desktop/Screen.h"
#include "Desktop/Services.h"
#include "Support/TemporaryFolder.h"

/// The modes' live forms in this process, on a screen of 800 by 600 of two displays with a window
/// manager, and a bus of the test's own.
class ModesDesktopTest : public testing::Test {
  protected:
    ModesDesktopTest();

    static DesktopTest::Screen& screen();
    static const TemporaryFolder& folder();
    static DesktopTest::PrivateBus& bus();
    static DesktopTest::Environment environment();
    static bool eventually(const std::function<bool()>& holds);
    static bool stays(const std::function<bool()>& holds);

    /// An ordinary window of another process; gives its frame.
    xcb_window_t addApp(const std::string& name, DesktopTest::Area area);
    /// Where the frame stands among the mapped windows, from the bottom.
    static std::size_t place(xcb_window_t frame);
    static xcb_window_t top() { return screen().mappedWindows().back(); }
    static bool isOurs(xcb_window_t window);
    /// For a developer to look at.
    static void keepPicture(const std::string& name, DesktopTest::Area area);

    OrvelSystem::QtMainLoop loop;

  private:
    std::vector<std::unique_ptr<DesktopTest::Process>> apps_;
};
