#include "OrvelSystem/DisplayAwake.h"

namespace OrvelSystem {

void DisplayAwake::hold() {
    if (isHeld()) return;
    // Drop the refused or unanswered request first, so that there is never more than one.
    assertion_.reset();
    assertion_ = take_(reason_);
}

}  // namespace OrvelSystem
