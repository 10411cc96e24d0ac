#pragma once

namespace OrvelLock {

/// Engages the system's own lock.
class HandoffPerforming {
  public:
    virtual ~HandoffPerforming() = default;
    /// Asks the system to lock. Only the system's notification tells whether it did.
    virtual void engageMacOSLock() = 0;
};

}  // namespace OrvelLock
