#include "OrvelModes/Blur/HotCornerController.h"

#include <utility>

#include "OrvelCore/HotCorner.h"

namespace OrvelModes {

HotCornerController::HotCornerController(OrvelSystem::MainLoop& loop,
                                         std::function<std::unique_ptr<CornerPanel>()> makePanel,
                                         std::function<std::vector<OrvelCore::Rect>()> screens)
    : loop_(loop), makePanel_(std::move(makePanel)), screens_(std::move(screens)) {}

void HotCornerController::configure(std::optional<Corner> corner, Action action) {
    panels_.clear();
    inside_ = false;
    action_ = action;
    if (!corner) return;
    for (const auto& screen : screens_()) {
        auto panel = makePanel_();
        panel->onEnter = lifetime_.guard([this] { entered(); });
        panel->onExit = lifetime_.guard([this] { inside_ = false; });
        panel->place(OrvelCore::HotCorner::rect(*corner, screen));
        panels_.push_back(std::move(panel));
    }
}

void HotCornerController::entered() {
    ++visit_;
    inside_ = true;
    // If the pointer leaves and returns within the dwell time, the dwell starts again.
    loop_
        .after(OrvelCore::HotCorner::dwell, lifetime_.guard([this, visit = visit_] {
            if (inside_ && visit_ == visit) onFire(action_);
        }))
        .detach();
}

}  // namespace OrvelModes
