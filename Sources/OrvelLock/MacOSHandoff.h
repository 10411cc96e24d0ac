#pragma once

#include <functional>
#include <utility>

#include "OrvelLock/HandoffPerforming.h"

namespace OrvelLock {

class MacOSHandoff final : public HandoffPerforming {
  public:
    /// `engage` asks the system to lock; what it returns is dropped, because only the system's
    /// notification tells whether the lock came.
    explicit MacOSHandoff(std::function<void()> engage) : engage_(std::move(engage)) {}
    void engageMacOSLock() override { engage_(); }

  private:
    std::function<void()> engage_;
};

}  // namespace OrvelLock
