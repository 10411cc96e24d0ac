#pragma once

#include <memory>
#include <string>

#include "Desktop/Process.h"

/// A program of one ordinary window, which is this test's own file under another role. It opens
/// and closes its window when told, and runs on without one.
class SampleApp {
  public:
    /// What `main` is started with for this role.
    static constexpr const char* argument = "--sample-app";
    static int run(const std::string& windowClass);

    explicit SampleApp(const std::string& windowClass);

    std::int64_t pid() const { return process_->pid(); }
    void openOrClose() const;
    void kill() { process_->kill(); }

  private:
    std::unique_ptr<DesktopTest::Process> process_;
};
