#pragma once

#include <optional>

#include "OrvelCore/PeekRule.h"

namespace OrvelCovers {

/// Follows the Option key from look to look. Times in seconds.
class PeekDetector {
  public:
    /// `optionOnly`: no other modifier but locks is down. `sinceKeyDown` counts keys that are no
    /// modifiers; infinite without one.
    bool isActive(bool option, bool optionOnly, double sinceKeyDown, double now) {
        if (!option) {
            optionSince_.reset();
            return false;
        }
        if (!optionSince_) optionSince_ = now;
        return OrvelCore::PeekRule::active(optionOnly, now - *optionSince_, sinceKeyDown);
    }

  private:
    std::optional<double> optionSince_;
};

}  // namespace OrvelCovers
