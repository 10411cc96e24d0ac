#pragma once

#include <optional>

#include "OrvelAuth/Linux/PAMStack.h"
#include "OrvelSystem/Linux/BoundedBus.h"

namespace OrvelAuth {

/// Claims the fingerprint readers during its lifetime if the stack asks for a finger before the
/// password. The PAM module then finds all readers in use and proceeds to the password at once;
/// otherwise it would wait for a finger longer than a check may take. Does nothing if the readers
/// cannot be claimed: they may be in use already, which has the same effect.
class FingerprintHold {
  public:
    explicit FingerprintHold(const PAMStack& stack);
    ~FingerprintHold();
    FingerprintHold(const FingerprintHold&) = delete;
    FingerprintHold& operator=(const FingerprintHold&) = delete;

  private:
    std::optional<OrvelSystem::BoundedBus> bus_;
    std::vector<std::string> readers_;
};

}  // namespace OrvelAuth
