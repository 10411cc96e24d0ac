#pragma once

#include <functional>
#include <string>

#include "OrvelAuth/PasswordVerifying.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Password.h"
#include "OrvelSystem/Task.h"

namespace OrvelAuth {

/// Checks a password against the system's account database, with a time limit. On Linux this is a
/// PAM check. A check that exceeds the limit continues on its thread, and its result is discarded.
class OpenDirectoryPasswordVerifier final : public PasswordVerifying {
  public:
    using Check =
        std::function<PasswordResult(const OrvelSystem::Password&, const std::string& userName)>;

    /// `timeout` is in seconds and must not be negative. `check` may block; it runs on its own
    /// thread.
    OpenDirectoryPasswordVerifier(std::string userName, double timeout, OrvelSystem::MainLoop& loop,
                                  Check check = verifyNow);

    OrvelSystem::Task<PasswordResult> verify(OrvelSystem::Password password) override;

    /// Called with every result that arrives in time, before the caller of `verify` receives it.
    /// Main thread.
    std::function<void(const PasswordResult&)> onAnswer = [](const PasswordResult&) {};

    /// Asks the system and blocks as long as that takes. It needs no main loop; in a program that
    /// has one, do not call it on the main thread. Each platform implements it.
    static PasswordResult verifyNow(const OrvelSystem::Password& password,
                                    const std::string& userName);

  private:
    std::string userName_;
    double timeout_;
    OrvelSystem::MainLoop& loop_;
    Check check_;
};

}  // namespace OrvelAuth
