#pragma once

#include "Process.h"

namespace DesktopTest {

/// A private X server, killed by the destructor.
class XServer {
  public:
    /// Starts this server, which chooses its display number, and waits until it is ready.
    XServer(Arguments arguments, const Environment& environment,
            const std::filesystem::path& log = {});
    /// A screen of 800 by 600 pixels. `missing` is an extension to disable; empty for none.
    explicit XServer(const std::string& missing = {});

    /// For example ":7".
    const std::string& display() const { return display_; }

  private:
    std::string display_;
    std::unique_ptr<Process> process_;
};

}  // namespace DesktopTest
