#pragma once

#include <optional>

#include "OrvelAuth/Linux/PAMStack.h"
#include "OrvelSystem/Linux/BoundedBus.h"

namespace OrvelAuth {

/// Keeps the fingerprint readers claimed for as long as it lives, if the stack asks for a finger
/// before the password. The module then finds every reader in use and goes on to the password at
/// once, where it would else wait for a finger longer than a check may take. Does nothing when the
/// readers cannot be claimed: they may be in use already, which serves as well.
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
