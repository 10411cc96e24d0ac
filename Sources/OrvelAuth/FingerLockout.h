#pragma once

#include "OrvelAuth/BiometricResult.h"

namespace OrvelAuth {

/// The lock-out of a sensor that does not lock itself. It counts the mismatches in all prompts of
/// the program.
class FingerLockout {
  public:
    /// The number of consecutive mismatches that lock the sensor.
    static constexpr int limit = 5;

    /// Counts a prompt that ended with `result`, and returns the result to report.
    BiometricResult judge(const BiometricResult& result);
    /// While this is true, `judge` accepts no finger; `reset` ends it.
    bool isLocked() const { return misses_ >= limit; }
    /// Call this after the owner has given the right password.
    void reset() { misses_ = 0; }

  private:
    int misses_ = 0;
};

}  // namespace OrvelAuth
