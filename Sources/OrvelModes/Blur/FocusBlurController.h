#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "OrvelCore/FocusPlanner.h"
#include "OrvelCore/URLCommand.h"
#include "OrvelCovers/WindowWatcher.h"
#include "OrvelModes/Blur/FocusBlurSystem.h"

namespace OrvelModes {

/// Blurs everything but the window in use, with one overlay for each display that never moves: only
/// its place among the windows changes. Samples when it is told to and has no timer of its own.
/// Main thread only.
class FocusBlurController {
  public:
    /// Seconds; none with reduced motion.
    static constexpr double fade = 0.2;

    explicit FocusBlurController(FocusBlurSystem system);

    std::function<void(bool isOn)> onChange = [](bool) {};
    /// Whether somebody has to look out for changes of the windows.
    std::function<void(bool isRunning)> onRunningChanged = [](bool) {};
    /// What the last sample saw.
    std::function<void(OrvelCovers::WindowWatcher::Snapshot)> onSampled =
        [](OrvelCovers::WindowWatcher::Snapshot) {};

    bool isOn() const { return isOn_; }
    void toggle();
    void turnOn();
    void turnOff();
    void apply(OrvelCore::URLCommands::Switch change);
    /// Looks at the windows and puts the overlays in order. Nothing while off.
    void sample();
    /// Makes new overlays, with the look of the moment.
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
