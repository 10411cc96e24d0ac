#pragma once

#include "OrvelAuth/BiometricResult.h"

namespace OrvelAuth {

/// The lock-out of a sensor that has none of its own. It counts the fingers that did not match in
/// all prompts of the program together.
class FingerLockout {
  public:
    /// So many in a row lock the sensor.
    static constexpr int limit = 5;

    /// What a prompt that ended with `result` means to a lock.
    BiometricResult judge(const BiometricResult& result);
    /// Until `reset` no finger counts any more.
    bool isLocked() const { return misses_ >= limit; }
    /// The owner gave the right password.
    void reset() { misses_ = 0; }

  private:
    int misses_ = 0;
};

}  // namespace OrvelAuth
