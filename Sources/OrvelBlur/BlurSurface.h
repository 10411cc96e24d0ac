#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "OrvelBlur/BlurBackend.h"
#include "OrvelBlur/OverlayPanel.h"
#include "OrvelCore/Color.h"
#include "OrvelCore/Geometry.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelBlur {

/// The one overlay of the program: a panel that blurs what lies behind it. Hidden (progress 0,
/// ordered out), ramping or shown (progress 1); `show` and `hide` may be called in any state and
/// start from the present values, so that a hide during a show turns smoothly around.
class BlurSurface {
  public:
    /// With `opaqueFill` nothing is blurred: the look for reduced transparency. `cornerRadius` in
    /// points. `loop` outlives the surface.
    BlurSurface(std::unique_ptr<OverlayPanel> panel, BlurBackend backend,
                const OrvelCore::Color& tint, std::optional<OrvelCore::Color> opaqueFill,
                double cornerRadius, OrvelSystem::MainLoop& loop);
    ~BlurSurface();

    OverlayPanel& panel() { return *panel_; }
    const OverlayPanel& panel() const { return *panel_; }
    BlurBackend backend() const { return backend_; }
    OrvelCore::Rect frame() const { return panel_->frame(); }
    /// 0 to 1, how far shown.
    double progress() const { return progress_; }
    /// The blur radius now applied, in points.
    int currentRadius() const { return currentRadius_; }
    bool isRamping() const { return rampTimer_.isSet(); }

    void apply(double progress, int radius);
    /// Nothing takes the old content away.
    void setContent(std::shared_ptr<PanelContent> content);
    /// `duration` in seconds; 0 or less shows at once. In front of its level or, from its first
    /// frame on, directly above the window of the server with the number `above`.
    void show(int radius, double duration, std::optional<std::uint64_t> above = {});
    /// The same, directly below that window.
    void showBelow(int radius, double duration, std::uint64_t below);
    /// `completion` runs once the panel is out, before returning if `duration` is 0 or less, and
    /// never if a `show` or `remove` comes first.
    void hide(double duration, std::function<void()> completion);
    void setFrame(const OrvelCore::Rect& frame);
    /// Takes the panel out at once. The surface can be shown again.
    void remove();

  private:
    void fadeIn(int radius, double duration);
    void startRamp(double progress, int radius, double duration, std::function<void()> completion);

    std::unique_ptr<OverlayPanel> panel_;
    BlurBackend backend_;
    OrvelSystem::MainLoop& loop_;
    double progress_ = 0;
    int currentRadius_ = 0;
    OrvelSystem::Timer rampTimer_;
};

}  // namespace OrvelBlur
