#pragma once

#include "Process.h"

namespace DesktopTest {

/// An X server that only this process uses.
class XServer {
  public:
    /// Starts this server and waits until it is ready. It chooses its display itself.
    XServer(Arguments arguments, const Environment& environment,
            const std::filesystem::path& log = {});
    /// A screen of 800 by 600. `missing` is an extension that it is to be without.
    explicit XServer(const std::string& missing = {});

    /// ":7"
    const std::string& display() const { return display_; }

  private:
    std::string display_;
    std::unique_ptr<Process> process_;
};

}  // namespace DesktopTest
