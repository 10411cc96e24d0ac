#pragma once

#include "Desktop/Process.h"
#include "Desktop/Screen.h"
#include "Desktop/Services.h"
#include "Support/TemporaryFolder.h"

/// Live forms in this process, on an X server and a message bus of the tests' own. The screen has
/// 800 by 600 pixels and two displays side by side.
class LiveTest : public testing::Test {
  protected:
    LiveTest();
    ~LiveTest() override;

    /// The server as a second client sees it.
    static DesktopTest::Screen& screen();
    /// ":7"
    static const std::string& display();
    static const TemporaryFolder& folder();
    static DesktopTest::PrivateBus& bus();
    /// For programs of the test; also names the display and the bus.
    static DesktopTest::Environment environment();

    /// Runs our loop until `holds` is true.
    static bool eventually(const std::function<bool()>& holds);
    static bool stays(const std::function<bool()>& holds,
                      std::chrono::milliseconds period = std::chrono::milliseconds(400));

    /// Starts openbox, which ends with the test or by `endWindowManager`.
    void startWindowManager();
    void endWindowManager();

  private:
    std::optional<DesktopTest::Process> manager_;
};
