#pragma once

#include "OrvelApp/Guard/Guard.h"
#include "OrvelSystem/Password.h"

namespace OrvelApp {

/// The check of the owner's password in a process of its own, so that a module of PAM that hangs or
/// crashes does not end the guard, and with it the stand-in. For a program with a single thread.
class PasswordCheckProcess {
  public:
    PasswordCheckProcess() = default;
    ~PasswordCheckProcess() { end(); }
    PasswordCheckProcess(const PasswordCheckProcess&) = delete;
    PasswordCheckProcess& operator=(const PasswordCheckProcess&) = delete;

    /// Begins a check that may take `timeout` seconds. One at a time.
    void begin(const OrvelSystem::Password& password, double timeout);
    bool isRunning() const { return pid_ > 0; }
    /// For poll; -1 while none runs.
    int descriptor() const { return descriptor_; }
    /// The verdict, once it is there or the time is over; nothing before. `now` and the time-out
    /// are of the monotonic clock.
    std::optional<Guard::Verdict> verdict();

  private:
    void end();

    int pid_ = 0;
    int descriptor_ = -1;
    double deadline_ = 0;
};

}  // namespace OrvelApp
