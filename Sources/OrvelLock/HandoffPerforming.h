#pragma once

namespace OrvelLock {

/// The door to the system's own lock.
class HandoffPerforming {
  public:
    virtual ~HandoffPerforming() = default;
    /// Asks the system to lock. Whether it did is learned from its notification alone.
    virtual void engageMacOSLock() = 0;
};

}  // namespace OrvelLock
