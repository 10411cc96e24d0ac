#pragma once

#include <functional>
#include <string>

#include "OrvelAuth/PasswordVerifying.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Password.h"
#include "OrvelSystem/Task.h"

namespace OrvelAuth {

/// The live check against the account database of the system, under a time limit. A check that
/// outlives the limit is abandoned with its thread; what it says in the end reaches nobody.
class OpenDirectoryPasswordVerifier final : public PasswordVerifying {
  public:
    using Check =
        std::function<PasswordResult(const OrvelSystem::Password&, const std::string& userName)>;

    /// `timeout` is in seconds and not negative. `check` runs on a thread of its own and blocks.
    OpenDirectoryPasswordVerifier(std::string userName, double timeout, OrvelSystem::MainLoop& loop,
                                  Check check = verifyNow);

    OrvelSystem::Task<PasswordResult> verify(OrvelSystem::Password password) override;

    /// Hears every answer in time, before the caller of `verify` does. Main thread.
    std::function<void(const PasswordResult&)> onAnswer = [](const PasswordResult&) {};

    /// Asks the system, for as long as it takes. Never on the main thread of a
    /// program that has a main loop; it needs none itself. Each platform defines it.
    static PasswordResult verifyNow(const OrvelSystem::Password& password,
                                    const std::string& userName);

  private:
    std::string userName_;
    double timeout_;
    OrvelSystem::MainLoop& loop_;
    Check check_;
};

}  // namespace OrvelAuth
