#pragma once

#include <memory>
#include <string>

#include "Process.h"

namespace DesktopTest {

/// An X server that only this process uses.
class XServer {
  public:
    /// `missing` is an extension that it is to be without.
    explicit XServer(const std::string& missing = {});

    const std::string& display() const { return display_; }

  private:
    std::string display_;
    std::unique_ptr<Process> process_;
};

}  // namespace DesktopTest
