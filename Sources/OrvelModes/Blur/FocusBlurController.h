#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "OrvelCore/FocusPlanner.h"
#include "OrvelCore/URLCommand.h"
#include "OrvelCovers/WindowWatcher.h"
#include "OrvelModes/Blur/FocusBlurSystem.h"

namespace OrvelModes {

/// Blurs everything except the window in use. It has one overlay for each display; overlays never
/// move, only their place in the stacking order changes. It samples on request and has no timer of
/// its own. Main thread only.
class FocusBlurController {
  public:
    /// Seconds; not used with reduced motion.
    static constexpr double fade = 0.2;

    explicit FocusBlurController(FocusBlurSystem system);

    std::function<void(bool isOn)> onChange = [](bool) {};
    /// Called with whether changes of the windows must be watched, when that changes.
    std::function<void(bool isRunning)> onRunningChanged = [](bool) {};
    /// Called with what the last sample saw.
    std::function<void(OrvelCovers::WindowWatcher::Snapshot)> onSampled =
        [](OrvelCovers::WindowWatcher::Snapshot) {};

    bool isOn() const { return isOn_; }
    void toggle();
    void turnOn();
    void turnOff();
    void apply(OrvelCore::URLCommands::Switch change);
    /// Reads the windows and restacks the overlays. Does nothing while off.
    void sample();
    /// Replaces the overlays by new ones with the current look.
    void lookChanged();

  private:
    struct Overlay {
        OrvelCore::Rect display;
        std::unique_ptr<ModeSurface> surface;
    };

    void sample(double duration);
    void makeOverlays(const std::vector<OrvelCore::FocusPlacement>& placements, double duration);
    void order(const Overlay& overlay, const OrvelCore::FocusPlacement& placement,
               const std::vector<OrvelCore::WindowInfo>& windows) const;
    double fadeDuration() const { return system_.reduceMotion() ? 0 : fade; }

    bool isOn_ = false;
    bool leavesOpen_ = false;
    FocusBlurSystem system_;
    std::vector<Overlay> overlays_;
};

}  // namespace OrvelModes
