#include "OrvelCovers/Wayland/HidingCover.h"

namespace OrvelCovers {

void HidingCover::order(OrvelCore::WindowID) {
    if (!sway_->wasTakenOut(request_.window)) return;
    sway_->hide(request_.window);
    if (request_.kind == OrvelCore::CoverKind::appLock && onAskedFor_) onAskedFor_();
}

}  // namespace OrvelCovers
