#include "OrvelModes/Blur/FocusBlurController.h"

namespace {

using Log = std::vector<std::string>;
constexpr Rect left{0, 0, 100, 100};
constexpr Rect right{100, 0, 100, 100};

class StubModeSurface final : public ModeSurface {
  public:
    StubModeSurface(Log& log, std::int64_t number) : log_(log), number_(number) {}
    std::int64_t windowNumber() const override { return number_; }
    void setContent(std::shared_ptr<PanelContent>) override {}
    void place(const Rect&) override {}
    void show(double duration) override { say("show", duration); }
    void hide(double duration) override { say("hide", duration); }
    void takeKeyboard() override { log_.push_back("keyboard"); }
    void order(std::int64_t below) override { log_.push_back("below " + std::to_string(below)); }
    void orderFront() override { log_.push_back("front"); }
    void leaveOpen(const std::vector<Rect>& parts) override { open = parts; }

    std::vector<Rect> open;

  private:
    void say(const char* what, double duration) {
        log_.push_back(std::string(what) + (duration > 0 ? " fading" : ""));
    }

    Log& log_;
    std::int64_t number_;
};

struct FocusBlurTest : testing::Test {
    Log log;
    std::int64_t next = 100;
    std::vector<Rect> displays{left, right};
    std::vector<WindowInfo> windows{{5, 7, 0, {10, 10, 50, 50}}, {6, 8, 0, {110, 10, 50, 50}}};
    FocusBlurController focus{FocusBlurSystem{
        .windows = [this] { return windows; },
        .displays = [this] { return displays; },
        .makeSurface = [this] { return std::make_unique<StubModeSurface>(log, next++); },
        .ownPID = 1,
        .reduceMotion = [] { return false; },
        .frontPID = [] { return std::optional<std::int64_t>(7); }}};
};

TEST_F(FocusBlurTest, OrdersOnlyWhatStandsInTheWrongPlace) {
    focus.sample();
    EXPECT_THAT(log, IsEmpty()) << "nothing while it is off";
    focus.turnOn();
    EXPECT_THAT(log, ElementsAre("show fading", "show fading", "below 5", "front"));
    log.clear();
    windows = {{5, 7, 0, {10, 10, 50, 50}},
               {101, 1, 0, right},
               {100, 1, 0, left},
               {6, 8, 0, {110, 10, 50, 50}}};
    focus.sample();
    EXPECT_THAT(log, ElementsAre("below 5")) << "the other display's overlay is between";
    windows = {{101, 1, 0, right},
               {5, 7, 0, {10, 10, 50, 50}},
               {100, 1, 0, left},
               {6, 8, 0, {110, 10, 50, 50}}};
    log.clear();
    focus.sample();
    EXPECT_THAT(log, IsEmpty());

    // The new overlays appear before the old ones disappear, and a removed display leaves no
    // overlay behind.
    focus.lookChanged();
    EXPECT_THAT(log, ElementsAre("show", "show", "below 5", "front", "hide", "hide"));
    displays = {left};
    log.clear();
    focus.sample();
    EXPECT_THAT(log, ElementsAre("hide", "hide", "show fading", "below 5"));
    log.clear();
    focus.turnOff();
    EXPECT_THAT(log, ElementsAre("hide"));
}

// Such a compositing manager would let the overlay hide the windows in front of it.
TEST_F(FocusBlurTest, LeavesOpenWhatIsInFrontWhereOverlaysAreDrawnOverIt) {
    StubModeSurface* surface = nullptr;
    bool drawsInFront = false;
    FocusBlurController cut{
        FocusBlurSystem{.windows = [this] { return windows; },
                        .displays = [] { return std::vector<Rect>{left}; },
                        .makeSurface =
                            [&] {
                                auto made = std::make_unique<StubModeSurface>(log, 100);
                                surface = made.get();
                                return made;
                            },
                        .ownPID = 1,
                        .reduceMotion = [] { return false; },
                        .frontPID = [] { return std::optional<std::int64_t>(7); },
                        .drawsOverlaysInFront = [&] { return drawsInFront; }}};
    // A dock, our own overlay, the active window half outside the display, and a window behind it.
    windows = {{9, 3, 20, {0, 90, 100, 10}},
               {101, 1, 0, left},
               {5, 7, 0, {60, 10, 80, 50}},
               {6, 8, 0, {0, 0, 50, 50}}};
    cut.turnOn();
    EXPECT_THAT(surface->open, IsEmpty());
    cut.turnOff();
    drawsInFront = true;
    cut.turnOn();
    EXPECT_THAT(surface->open, ElementsAre(Rect{0, 90, 100, 10}, Rect{60, 10, 40, 50}));
    windows[2].bounds.x = 20;
    cut.sample();
    EXPECT_THAT(surface->open, ElementsAre(Rect{0, 90, 100, 10}, Rect{20, 10, 80, 50}));
    windows.erase(windows.begin() + 2);
    cut.sample();
    EXPECT_THAT(surface->open, ElementsAre(Rect{0, 90, 100, 10})) << "nothing is in use";
}

}  // namespace
