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

/// Keeps covers exactly over other apps' windows. It samples the window server, plans, and has the
/// controller carry the plan out: often while anything moves, seldom at rest, and not at all with
/// nothing to protect. A bounds-only sample reads the order of the windows and where the covered
/// ones are; a full one reads them all. Main thread only.
class CoverLoop {
  public:
    // Seconds.
    static constexpr double fastInterval = 0.05;
    static constexpr double restInterval = 0.5;
    /// Longest time between two full samples.
    static constexpr double fullInterval = 0.5;
    /// For how long after the last motion it keeps to the fast rate.
    static constexpr double settle = 1.0;
    /// For how long a nudge makes every sample a full one.
    static constexpr double burst = 0.35;
    /// For how long after its last change a window counts as moving.
    static constexpr double rest = 0.15;

    /// What it sees of the system. Window lists run front-most first.
    struct Sources {
        std::function<std::vector<OrvelCore::WindowInfo>()> windows;
        std::function<std::vector<std::int64_t>()> windowNumbers;
        /// Without those that are gone.
        std::function<std::map<std::int64_t, OrvelCore::Rect>(const std::vector<std::int64_t>&)>
            windowBounds;
        std::function<std::vector<OrvelCore::Rect>()> displays;
        std::function<std::optional<std::int64_t>()> activePID;
        /// Where the pointer is while the user peeks.
        std::function<std::optional<OrvelCore::Point>()> peekPoint;
        std::function<bool()> mouseDown;
        /// Seconds of the monotonic clock.
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
    /// Each write takes a full sample, so that a cover is up when it returns.
    void setLockedPIDs(std::set<std::int64_t> pids);
    void setPrivatePIDs(std::set<std::int64_t> pids);

    /// An app came forward, a desktop changed: what is on the screen may change for a moment.
    void nudge();
    /// The watcher saw a change.
    void somethingChanged();

    bool peekEnabled = true;
    /// The windows of each sample that led to a plan.
    std::function<void(const std::vector<OrvelCore::WindowInfo>&)> onTick = [](const auto&) {};
    /// It began or ceased to run.
    std::function<void(bool)> onRunningChanged = [](bool) {};
    /// What it knows after each sample.
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
    bool widening_ = false;  // the latest plan holds a widened cover
};

}  // namespace OrvelCovers
