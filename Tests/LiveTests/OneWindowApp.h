#pragma once

#include "Desktop/Process.h"

/// A program with one ordinary window, which is this test executable in another role. It opens and
/// closes its window on request, and keeps running without it.
class OneWindowApp {
  public:
    /// The argument that selects this role in `main`.
    static constexpr const char* argument = "--one-window-app";
    static int run(const std::string& windowClass);

    explicit OneWindowApp(const std::string& windowClass);

    std::int64_t pid() const { return process_->pid(); }
    void openOrClose() const;
    void kill() { process_->kill(); }

  private:
    std::unique_ptr<DesktopTest::Process> process_;
};
