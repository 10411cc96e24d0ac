#pragma once

#include <functional>
#include <memory>

#include "OrvelCore/CoverPlanner.h"
#include "OrvelCovers/CoverSurface.h"
#include "OrvelSystem/Wayland/Sway.h"

namespace OrvelCovers {

/// Protects a window by hiding it, where nothing can be placed directly above a window of another
/// program. There is nothing to click: the user asks for the app by taking the window out of the
/// scratchpad.
class HidingCover final : public CoverSurface {
  public:
    /// `onAskedFor` is called when the user has asked for the window of a locked app, which is
    /// hidden again.
    HidingCover(std::shared_ptr<OrvelSystem::Sway> sway, const OrvelCore::CoverRequest& request,
                std::function<void()> onAskedFor)
        : sway_(std::move(sway)), request_(request), onAskedFor_(std::move(onAskedFor)) {}

    /// No window has this number, so `order` is called for each plan.
    OrvelCore::WindowID windowNumber() const override { return -1; }
    void place(const OrvelCore::Rect&) override {}
    void order(OrvelCore::WindowID) override;
    void show(bool) override { sway_->hide(request_.window); }
    void remove() override { sway_->show(request_.window); }

  private:
    std::shared_ptr<OrvelSystem::Sway> sway_;
    OrvelCore::CoverRequest request_;
    std::function<void()> onAskedFor_;
};

}  // namespace OrvelCovers
