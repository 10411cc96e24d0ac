#pragma once

#include "Desktop/Process.h"

/// A program of one ordinary window, which is this test's own file under another role. It opens
/// and closes its window when told, and runs on without one.
class OneWindowApp {
  public:
    /// What `main` is started with for this role.
    static constexpr const char* argument = "--one-window-app";
    static int run(const std::string& windowClass);

    explicit OneWindowApp(const std::string& windowClass);

    std::int64_t pid() const { return process_->pid(); }
    void openOrClose() const;
    void kill() { process_->kill(); }

  private:
    std::unique_ptr<DesktopTest::Process> process_;
};
