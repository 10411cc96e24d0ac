#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "OrvelBlur/BlurSurface.h"
#include "OrvelCore/CoverPlanner.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelCovers/CoverSurface.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelCovers {

/// A cover made of blur surfaces, one for each display that it touches, all directly above the
/// window. Its look does not depend on the user's settings, which apply only to the lock and the
/// blur modes.
class LiveCoverSurface final : public CoverSurface {
  public:
    struct Environment {
        OrvelSystem::MainLoop& loop;
        OrvelBlur::BlurBackend backend = OrvelBlur::BlurBackend::skyLight;
        /// The frames of all displays, in window-server coordinates.
        std::function<std::vector<OrvelCore::Rect>()> displays;
        /// Read whenever a surface is made.
        std::function<bool()> reduceTransparency;
    };

    /// Seconds; used only for private apps.
    static constexpr double fadeIn = 0.1;

    /// `onClick` is used only for locked apps. A private app's cover passes pointer events through
    /// to the app.
    LiveCoverSurface(const OrvelCore::CoverRequest& request, Environment environment,
                     std::function<void()> onClick);

    OrvelCore::WindowID windowNumber() const override;
    OrvelCore::WindowID frontNumber() const override;
    void place(const OrvelCore::Rect& rect) override;
    void order(OrvelCore::WindowID above) override;
    void drawInFront(const std::vector<OrvelCore::WindowID>& windows) override;
    void show(bool fade) override;
    void remove() override;

  private:
    std::unique_ptr<OrvelBlur::BlurSurface> makeSurface() const;
    void show(OrvelBlur::BlurSurface& surface, double duration) const;

    OrvelCore::CoverRequest request_;
    Environment environment_;
    std::function<void()> onClick_;
    bool shown_ = false;
    std::vector<OrvelCore::WindowID> inFront_;
    std::vector<std::unique_ptr<OrvelBlur::BlurSurface>> surfaces_;  // never empty
};

}  // namespace OrvelCovers
