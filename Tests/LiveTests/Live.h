#pragma once

#include "Desktop/Process.h"
#include "Desktop/Screen.h"
#include "Desktop/Services.h"
#include "Support/TemporaryFolder.h"

/// Live forms in this process, on a private X server and message bus. The screen has 800 by 600
/// pixels and two displays side by side.
class LiveTest : public testing::Test {
  protected:
    LiveTest();
    ~LiveTest() override;

    /// A second client of the server.
    static Screen& screen();
    /// For example ":7".
    static const std::string& display();
    static const TemporaryFolder& folder();
    static PrivateBus& bus();
    /// The environment for programs that a test starts; includes the display and the bus.
    static DesktopTest::Environment environment();

    /// Creates an unmapped window of the second client. `mask` and `values` are its attributes.
    static xcb_window_t createWindow(Area area, std::uint32_t mask,
                                     const std::vector<std::uint32_t>& values);
    /// Runs the event loop until `holds` returns true; false if it does not within `patience`.
    static bool eventually(const std::function<bool()>& holds);
    static bool stays(const std::function<bool()>& holds,
                      std::chrono::milliseconds period = std::chrono::milliseconds(400));

    /// Starts openbox, which runs until the end of the test or `endWindowManager`.
    void startWindowManager();
    void endWindowManager();

  private:
    std::optional<DesktopTest::Process> manager_;
};
