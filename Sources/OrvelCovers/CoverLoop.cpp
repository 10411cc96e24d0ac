#include "OrvelCovers/CoverLoop.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace OrvelCovers {

using OrvelCore::MotionTracker;
using OrvelCore::WindowInfo;
using OrvelCore::CoverPlanner::covers;

CoverLoop::CoverLoop(CoverController& controller, Sources sources, Ticker& ticker)
    : controller_(controller), sources_(std::move(sources)), ticker_(ticker) {}

CoverLoop::~CoverLoop() {
    ticker_.stop();
}

void CoverLoop::setLockedPIDs(std::set<std::int64_t> pids) {
    lockedPIDs_ = std::move(pids);
    changed();
}

void CoverLoop::setPrivatePIDs(std::set<std::int64_t> pids) {
    privatePIDs_ = std::move(pids);
    changed();
}

void CoverLoop::nudge() {
    if (protectsNothing()) return;
    burstUntil_ = sources_.now() + burst;
    sample(true);
}

void CoverLoop::somethingChanged() {
    if (protectsNothing()) return;
    sample(false);
}

void CoverLoop::changed() {
    if (!protectsNothing()) {
        panelsAreDrawnInFront_ = sources_.drawsPanelsInFront();
        return sample(true);
    }
    if (ticker_.isRunning()) {
        ticker_.stop();
        onRunningChanged(false);
    }
    controller_.removeAll();
    tracker_ = MotionTracker(rest);
    last_.clear();
    lastPeek_.reset();
    lastFull_ = lastMotion_ = burstUntil_ = never;
    lastDisplays_.clear();
    widening_ = false;
}

void CoverLoop::tick() {
    const double now = sources_.now();
    sample(burstUntil_ > now || now - lastFull_ >= fullInterval);
}

void CoverLoop::sample(bool full) {
    const auto peek = peekEnabled ? sources_.peekPoint() : std::nullopt;
    if (full) {
        auto windows = sources_.windows();
        lastFull_ = sources_.now();
        plan(std::move(windows), peek);
    } else {
        // Only this detects windows that are new, gone or restacked.
        if (!std::ranges::equal(sources_.windowNumbers(), last_, {}, {}, &WindowInfo::number))
            return sample(true);
        const auto covered = controller_.coveredWindows();
        std::map<OrvelCore::WindowID, OrvelCore::Rect> bounds;
        if (!covered.empty()) bounds = sources_.windowBounds({covered.begin(), covered.end()});
        // A covered window has gone.
        if (bounds.size() != covered.size()) return sample(true);
        const auto hasMoved = [&](const WindowInfo& window) {
            const auto fresh = bounds.find(window.number);
            return fresh != bounds.end() && fresh->second != window.bounds;
        };
        // Without a new plan, a widened cover would not shrink when its window stops moving.
        if (widening_ || peek != lastPeek_ || std::ranges::any_of(last_, hasMoved)) {
            auto windows = last_;
            for (auto& window : windows) {
                if (hasMoved(window)) window.bounds = bounds.at(window.number);
            }
            plan(std::move(windows), peek);
        }
    }
    schedule();
    publish();
}

void CoverLoop::plan(std::vector<WindowInfo> windows, const std::optional<OrvelCore::Point>& peek) {
    const double now = sources_.now();
    std::vector<WindowInfo> watched;
    std::ranges::copy_if(windows, std::back_inserter(watched), [this](const WindowInfo& window) {
        return covers(window.layer) &&
               (lockedPIDs_.contains(window.ownerPID) || privatePIDs_.contains(window.ownerPID));
    });
    OrvelCore::CoverInputs inputs{.windows = std::move(windows),
                                  .lockedPIDs = lockedPIDs_,
                                  .privatePIDs = privatePIDs_,
                                  .moving = tracker_.update(watched, now),
                                  .peek = peek,
                                  .ownPID = sources_.ownPID,
                                  .panelsAreDrawnInFront = panelsAreDrawnInFront_};
    if (!inputs.moving.empty()) lastMotion_ = now;
    inputs.displays = sources_.displays();
    inputs.activePID = sources_.activePID();
    const auto plan = OrvelCore::CoverPlanner::plan(inputs);

    if (!lastDisplays_.empty() && lastDisplays_ != inputs.displays) controller_.replaceAll();
    lastDisplays_ = std::move(inputs.displays);
    controller_.apply(plan, inputs.windows);
    last_ = std::move(inputs.windows);
    lastPeek_ = peek;
    widening_ = std::ranges::any_of(plan, &OrvelCore::CoverRequest::widened);
    // A copy, because the handler may cause another sample.
    onTick(std::vector(last_));
}

void CoverLoop::schedule() {
    if (protectsNothing()) return;
    const double now = sources_.now();
    const bool rests = !widening_ && !lastPeek_ && !sources_.mouseDown() &&
                       now - lastMotion_ >= settle && burstUntil_ <= now;
    const double interval = rests ? restInterval : fastInterval;
    const bool wasRunning = ticker_.isRunning();
    if (wasRunning && ticker_.interval() == interval) return;
    ticker_.start(interval, [this] { tick(); });
    if (!wasRunning) onRunningChanged(true);
}

void CoverLoop::publish() {
    if (protectsNothing()) return;
    const auto covered = controller_.coveredWindows();
    WindowWatcher::Snapshot snapshot;
    snapshot.numbers.reserve(last_.size());
    for (const auto& window : last_) {
        snapshot.numbers.push_back(window.number);
        if (covered.contains(window.number)) snapshot.covered.emplace(window.number, window.bounds);
    }
    onSampled(std::move(snapshot));
}

}  // namespace OrvelCovers
