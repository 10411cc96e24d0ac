#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "OrvelCore/MotionTracker.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelCovers/CoverController.h"
#include "OrvelCovers/Ticker.h"
#include "OrvelCovers/WindowWatcher.h"

namespace OrvelCovers {

/// Keeps covers exactly over other apps' windows. It samples the window server, makes a plan and
/// passes it to the controller: often while anything moves, rarely at rest, and not at all while
/// nothing is protected. A bounds-only sample reads the order of the windows and the bounds of the
/// covered ones; a full sample reads all windows. Main thread only.
class CoverLoop {
  public:
    // Seconds between samples while anything moves, and at rest. All durations here are in seconds.
    static constexpr double fastInterval = 0.05;
    static constexpr double restInterval = 0.5;
    /// The longest time between two full samples.
    static constexpr double fullInterval = 0.5;
    /// How long the fast rate continues after the last motion.
    static constexpr double settle = 1.0;
    /// How long every sample is a full one after a nudge.
    static constexpr double burst = 0.35;
    /// How long a window counts as moving after its last change.
    static constexpr double rest = 0.15;

    /// What the loop reads from the system. Window lists are ordered front-most first.
    struct Sources {
        std::function<std::vector<OrvelCore::WindowInfo>()> windows;
        std::function<std::vector<OrvelCore::WindowID>()> windowNumbers;
        /// Bounds in window-server coordinates. Windows that no longer exist are missing.
        std::function<std::map<OrvelCore::WindowID, OrvelCore::Rect>(
            const std::vector<OrvelCore::WindowID>&)>
            windowBounds;
        /// The frames of all displays, in window-server coordinates.
        std::function<std::vector<OrvelCore::Rect>()> displays;
        /// The process of the app in front; `nullopt` when there is none.
        std::function<std::optional<std::int64_t>()> activePID;
        /// The pointer while the user peeks; `nullopt` otherwise. In window-server coordinates.
        std::function<std::optional<OrvelCore::Point>()> peekPoint;
        std::function<bool()> mouseDown;
        /// Whether panels are drawn in front of all windows. Asked when the protected apps change,
        /// because the answer needs several replies of the window server.
        std::function<bool()> drawsPanelsInFront = [] { return false; };
        /// The monotonic clock, in seconds.
        std::function<double()> now;
        std::int64_t ownPID = 0;

        static Sources live(OrvelSystem::MainLoop& loop, std::int64_t ownPID);
    };

    CoverLoop(CoverController& controller, Sources sources, Ticker& ticker);
    ~CoverLoop();
    CoverLoop(const CoverLoop&) = delete;
    CoverLoop& operator=(const CoverLoop&) = delete;

    const CoverController& controller() const { return controller_; }
    const std::set<std::int64_t>& lockedPIDs() const { return lockedPIDs_; }
    const std::set<std::int64_t>& privatePIDs() const { return privatePIDs_; }
    /// Each setter takes a full sample, so the covers are up when it returns.
    void setLockedPIDs(std::set<std::int64_t> pids);
    void setPrivatePIDs(std::set<std::int64_t> pids);

    /// For events after which the screen may change briefly, such as a change of the front app or
    /// of the desktop.
    void nudge();
    /// The watcher has seen a change.
    void somethingChanged();

    bool peekEnabled = true;
    /// Called with the windows of each sample that led to a plan.
    std::function<void(const std::vector<OrvelCore::WindowInfo>&)> onTick = [](const auto&) {};
    /// Called with whether the loop runs, when that changes.
    std::function<void(bool)> onRunningChanged = [](bool) {};
    /// Called with the known windows after each sample.
    std::function<void(WindowWatcher::Snapshot)> onSampled = [](const auto&) {};

  private:
    static constexpr double never = -std::numeric_limits<double>::infinity();

    bool protectsNothing() const { return lockedPIDs_.empty() && privatePIDs_.empty(); }
    void changed();
    void tick();
    void sample(bool full);
    void plan(std::vector<OrvelCore::WindowInfo> windows,
              const std::optional<OrvelCore::Point>& peek);
    void schedule();
    void publish();

    CoverController& controller_;
    Sources sources_;
    Ticker& ticker_;
    std::set<std::int64_t> lockedPIDs_;
    std::set<std::int64_t> privatePIDs_;

    OrvelCore::MotionTracker tracker_{rest};
    std::vector<OrvelCore::WindowInfo> last_;
    std::optional<OrvelCore::Point> lastPeek_;
    double lastFull_ = never;
    double lastMotion_ = never;
    double burstUntil_ = never;
    std::vector<OrvelCore::Rect> lastDisplays_;
    bool widening_ = false;  // the latest plan contains a widened cover
    bool panelsAreDrawnInFront_ = false;
};

}  // namespace OrvelCovers
