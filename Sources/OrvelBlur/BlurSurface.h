#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "OrvelBlur/BlurBackend.h"
#include "OrvelBlur/OverlayPanel.h"
#include "OrvelCore/Color.h"
#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelBlur {

/// The program's one kind of overlay: a panel that blurs what is behind it. It is hidden (progress
/// 0, ordered out), ramping or shown (progress 1). `show` and `hide` may be called in any state and
/// start from the current values, so a `hide` during a `show` reverses smoothly.
class BlurSurface {
  public:
    /// With `opaqueFill` nothing is blurred, which is the look for reduced transparency.
    /// `cornerRadius` is in points. `loop` must outlive the surface.
    BlurSurface(std::unique_ptr<OverlayPanel> panel, BlurBackend backend,
                const OrvelCore::Color& tint, std::optional<OrvelCore::Color> opaqueFill,
                double cornerRadius, OrvelSystem::MainLoop& loop);
    ~BlurSurface();

    OverlayPanel& panel() { return *panel_; }
    const OverlayPanel& panel() const { return *panel_; }
    BlurBackend backend() const { return backend_; }
    /// In window-server coordinates.
    OrvelCore::Rect frame() const { return panel_->frame(); }
    /// How far the surface is shown, 0 to 1.
    double progress() const { return progress_; }
    /// The blur radius that is applied now, in points.
    int currentRadius() const { return currentRadius_; }
    bool isRamping() const { return rampTimer_.isSet(); }

    /// Sets the opacity (0 to 1) of all layers and the radius (in points) without a ramp.
    void apply(double progress, int radius);
    /// Null removes the content.
    void setContent(std::shared_ptr<PanelContent> content);
    /// `radius` in points; `duration` in seconds, where 0 or less shows at once. Orders the panel
    /// to the front of its level or, if `above` is set, directly above the window with that number
    /// in the window server, from the first frame on.
    void show(int radius, double duration, std::optional<OrvelCore::WindowID> above = {});
    /// Like `show`, but directly below the window `below`.
    void showBelow(int radius, double duration, OrvelCore::WindowID below);
    /// `duration` in seconds. `completion` runs when the panel is ordered out: before `hide`
    /// returns if `duration` is 0 or less, and never if `show` or `remove` is called first.
    void hide(double duration, std::function<void()> completion);
    /// As in `OverlayPanel`, for a later `show` with this radius by another surface of this frame.
    void rehearse(int radius);
    /// In window-server coordinates.
    void setFrame(const OrvelCore::Rect& frame);
    /// Orders the panel out at once. The surface can be shown again.
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
