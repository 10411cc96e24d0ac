#pragma once

#include <optional>

#include "OrvelCore/PeekRule.h"

namespace OrvelCovers {

/// Tracks the Option key from one sample to the next. Times in seconds.
class PeekDetector {
  public:
    /// `optionOnly`: no modifier except Option and locks is down. `sinceKeyDown` is the time since
    /// a key that is not a modifier was pressed; infinite if none was.
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
