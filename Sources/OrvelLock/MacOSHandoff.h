#pragma once

#include <functional>
#include <utility>

#include "OrvelLock/HandoffPerforming.h"

namespace OrvelLock {

class MacOSHandoff final : public HandoffPerforming {
  public:
    /// `engage` asks the system to lock. Its result is ignored, because only the system's
    /// notification tells whether the lock came up.
    explicit MacOSHandoff(std::function<void()> engage) : engage_(std::move(engage)) {}
    void engageMacOSLock() override { engage_(); }

  private:
    std::function<void()> engage_;
};

}  // namespace OrvelLock
