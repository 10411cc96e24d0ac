#pragma once

#include "OrvelApp/Guard/Guard.h"
#include "OrvelSystem/Password.h"

namespace OrvelApp {

/// Checks the owner's password in a separate process, so that a PAM module that hangs or crashes
/// does not end the guard and its stand-in. Only for a single-threaded program.
class PasswordCheckProcess {
  public:
    PasswordCheckProcess() = default;
    ~PasswordCheckProcess() { end(); }
    PasswordCheckProcess(const PasswordCheckProcess&) = delete;
    PasswordCheckProcess& operator=(const PasswordCheckProcess&) = delete;

    /// Starts a check that may take `timeout` seconds. Ends a running one.
    void begin(const OrvelSystem::Password& password, double timeout);
    bool isRunning() const { return pid_ > 0; }
    /// For `poll`; -1 while no check runs.
    int descriptor() const { return descriptor_; }
    /// The result, when it is available or the time is over; `nullopt` before. A check that fails
    /// or takes too long is `unavailable`.
    std::optional<Guard::Verdict> verdict();

  private:
    void end();

    int pid_ = 0;
    int descriptor_ = -1;
    double deadline_ = 0;
};

}  // namespace OrvelApp
