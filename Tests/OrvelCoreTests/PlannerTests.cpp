#include "OrvelCore/CoverPlanner.h"
#include "OrvelCore/FocusPlanner.h"
#include "OrvelCore/MotionTracker.h"
#include "OrvelCore/ZOrder.h"

// Compares the window planners with slow, simple reference implementations on random desktops.

using Number = std::optional<std::int64_t>;
using Windows = std::vector<WindowInfo>;

namespace {

constexpr int desktops = 3000;
constexpr std::int64_t own = 5;

// All edges are on a coarse grid, so windows often touch, coincide or narrowly miss each other, and
// a rectangle can be a set of cells. Windows with a side below two cells do not count.
constexpr int cell = 12;
using Cells = std::set<std::pair<int, int>>;

Cells cellsOf(const Rect& rect) {
    Cells cells;
    for (int x = static_cast<int>(rect.x); x < rect.maxX(); x += cell) {
        for (int y = static_cast<int>(rect.y); y < rect.maxY(); y += cell) cells.emplace(x, y);
    }
    return cells;
}

Cells shared(const Rect& a, const Rect& b) {
    Cells both;
    std::ranges::set_intersection(cellsOf(a), cellsOf(b), std::inserter(both, both.end()));
    return both;
}

Rect around(const Cells& cells) {
    const auto [left, right] = std::ranges::minmax(cells | std::views::keys);
    const auto [top, bottom] = std::ranges::minmax(cells | std::views::values);
    return {1.0 * left, 1.0 * top, 1.0 * (right - left + cell), 1.0 * (bottom - top + cell)};
}

class Dice {
  public:
    int roll(int first, int last) { return std::uniform_int_distribution(first, last)(engine_); }
    double edge(int first, int last) { return cell * roll(first, last); }
    Rect rect() { return {edge(-2, 8), edge(-2, 8), edge(0, 5), edge(0, 5)}; }
    std::vector<Rect> displays() {
        std::vector<Rect> displays(roll(0, 3));
        for (auto& display : displays) display = rect();
        // Mirrored displays.
        if (displays.size() == 3 && roll(0, 3) == 0) displays[2] = displays[0];
        return displays;
    }
    Windows windows() {
        constexpr std::int64_t layers[] = {0, 0, 0, 3, 19, 20, 21, -1};
        Windows windows;
        for (const auto number : someOf(12))
            windows.push_back({number, roll(0, own), layers[roll(0, 7)], rect()});
        std::shuffle(windows.begin(), windows.end(), engine_);
        return windows;
    }
    std::set<std::int64_t> someOf(int last) {
        std::set<std::int64_t> chosen;
        for (int i = 1; i <= last; ++i) {
            if (roll(0, 2) > 0) chosen.insert(i);
        }
        return chosen;
    }

  private:
    std::mt19937 engine_;  // Fixed seed, so each run uses the same desktops.
};

bool isLarge(const WindowInfo& window) {
    return window.bounds.width >= 24 && window.bounds.height >= 24;
}

std::vector<CoverRequest> coverTwin(const CoverInputs& inputs) {
    Windows underPointer = inputs.windows;
    std::erase_if(underPointer, [&](const auto& window) {
        const auto& [x, y, width, height] = window.bounds;
        return !inputs.peek || window.ownerPID == own || window.layer > 19 || inputs.peek->x < x ||
               inputs.peek->x >= x + width || inputs.peek->y < y || inputs.peek->y >= y + height;
    });
    std::vector<CoverRequest> plan;
    std::vector<WindowID> strangers;
    for (const auto& window : inputs.windows) {
        const bool isInUse = inputs.activePID == window.ownerPID ||
                             (!underPointer.empty() && underPointer[0] == window);
        const bool isLocked = inputs.lockedPIDs.contains(window.ownerPID);
        const bool isHidden = inputs.privatePIDs.contains(window.ownerPID) && !isInUse;
        const bool isOpen = !isLocked && !isHidden;
        // Not those of unknown owners (0), and no menus.
        if (isOpen && window.ownerPID > 0 && window.layer < 21) strangers.push_back(window.number);
        if (isOpen) continue;
        if (window.layer < 0 || window.layer > 19 || window.ownerPID == own || !isLarge(window))
            continue;

        const auto& [x, y, width, height] = window.bounds;
        const bool isMoving = inputs.moving.contains(window.number);
        Cells touched;
        for (const auto& display : inputs.displays) {
            if (!shared(window.bounds, display).empty()) touched.merge(cellsOf(display));
        }
        plan.push_back({window.number, window.ownerPID,
                        isLocked ? CoverKind::appLock : CoverKind::privateApp,
                        isMoving && !touched.empty() ? around(touched)
                                                     : Rect{x - 1, y - 1, width + 2, height + 2},
                        isMoving, window.layer, inputs.panelsAreDrawnInFront,
                        inputs.panelsAreDrawnInFront ? strangers : std::vector<WindowID>()});
    }
    return plan;
}

std::vector<FocusPlacement> focusTwin(const Windows& candidates,
                                      const std::vector<Rect>& displays) {
    std::vector<std::size_t> areas;
    for (const auto& display : displays)
        areas.push_back(candidates.empty() ? 0 : shared(display, candidates[0].bounds).size());
    const auto most = std::ranges::max_element(areas);
    std::vector<FocusPlacement> placements;
    for (const auto& display : displays) {
        const bool isHome = *most > 0 && display == displays[most - areas.begin()];
        placements.push_back({display});
        if (isHome) placements.back().order = FocusPlacement::Below{candidates[0].number};
    }
    return placements;
}

}  // namespace

TEST(CoverPlanner, AgreesWithASecondImplementation) {
    Dice dice;
    int peeks = 0;
    for (int i = 0; i < desktops; ++i) {
        CoverInputs inputs{dice.windows(),
                           dice.someOf(own),
                           dice.someOf(own),
                           {},
                           dice.someOf(12),
                           dice.displays(),
                           {},
                           own};
        inputs.lockedPIDs.erase(dice.roll(1, own));
        if (dice.roll(0, 1) == 0) inputs.activePID = dice.roll(1, own);
        inputs.panelsAreDrawnInFront = dice.roll(0, 1) == 0;
        const auto unpeeked = CoverPlanner::plan(inputs);
        if (!inputs.windows.empty()) {
            const auto& [x, y, width, height] = inputs.windows.back().bounds;
            inputs.peek = Point{x + dice.edge(0, 3), y + dice.edge(0, 3)};
        }
        const auto plan = CoverPlanner::plan(inputs);
        ASSERT_EQ(plan, coverTwin(inputs)) << "desktop " << i;
        peeks += plan != unpeeked;

        for (const auto& window : inputs.windows) {
            std::vector<Rect> pieces;
            for (const auto& display : inputs.displays) {
                const auto both = shared(window.bounds, display);
                if (!both.empty()) pieces.push_back(around(both));
            }
            if (pieces.empty()) pieces.push_back(window.bounds);
            ASSERT_EQ(CoverPlanner::pieces(window.bounds, inputs.displays), pieces) << i;
        }
    }
    EXPECT_GT(peeks, 100);

    CoverInputs odd;
    odd.lockedPIDs = {7};
    for (const double side : {23.9, std::nan("")})
        odd.windows.insert(odd.windows.end(),
                           {{1, 7, 0, {0, 0, side, 99}}, {2, 7, 0, {0, 0, 99, side}}});
    EXPECT_TRUE(CoverPlanner::plan(odd).empty());
}

TEST(FocusPlanner, AgreesWithASecondImplementation) {
    Dice dice;
    for (int i = 0; i < desktops; ++i) {
        const auto windows = dice.windows();
        const auto displays = dice.displays();
        const auto frontPID = dice.roll(0, 3) > 0 ? Number(dice.roll(1, own)) : Number();
        auto candidates = windows;
        std::erase_if(candidates, [&](const auto& window) {
            return window.ownerPID == own || window.layer != 0 || !isLarge(window) ||
                   (frontPID && frontPID != own && frontPID != window.ownerPID);
        });
        ASSERT_EQ(FocusPlanner::plan(windows, displays, own, frontPID),
                  focusTwin(candidates, displays))
            << "desktop " << i;

        const std::int64_t surface = dice.roll(1, 12);
        const auto ours = std::ranges::find(windows, surface, &WindowInfo::number);
        for (const auto& display : displays) {
            bool isOvertaken = ours == windows.end();
            for (auto it = windows.begin(); it != ours; ++it)
                isOvertaken |=
                    it->layer == 0 && it->ownerPID != own && !shared(it->bounds, display).empty();
            ASSERT_EQ(FocusPlanner::isOvertaken(surface, display, windows, own), isOvertaken);
        }
    }
}

TEST(MotionTracker, AgreesWithTheHistoryOfEachWindow) {
    Dice dice;
    constexpr double rest = 3;
    MotionTracker tracker(rest);
    std::vector<std::pair<double, std::map<std::int64_t, Rect>>> history;
    for (double now = 0; now < desktops; now += dice.roll(1, 2)) {
        auto& bounds = history.emplace_back(now, std::map<std::int64_t, Rect>()).second;
        Windows windows;
        for (const auto number : dice.someOf(12)) {
            // Only two sizes, so that windows also rest and return to an earlier size.
            bounds[number] = {0, 0, 50, dice.roll(0, 4) == 0 ? 60.0 : 50.0};
            windows.push_back({number, 1, 0, bounds[number]});
        }
        std::set<std::int64_t> moving;
        for (const auto& [number, last] : bounds) {
            for (auto step = history.rbegin(); step + 1 != history.rend(); ++step) {
                const auto& earlier = (step + 1)->second;
                if (!earlier.contains(number)) break;
                if (earlier.at(number) == step->second.at(number)) continue;
                if (now - step->first < rest) moving.insert(number);
                break;
            }
        }
        ASSERT_EQ(tracker.update(windows, now), moving) << "at " << now;
    }
}
