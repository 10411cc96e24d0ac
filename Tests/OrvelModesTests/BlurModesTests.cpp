// Blur Screen, Focus Blur and the lock before sleep on stubs.

#include "OrvelModes/Blur/FocusBlurController.h"
#include "OrvelModes/Blur/QuickBlurController.h"
#include "OrvelModes/Blur/SleepController.h"

#include "Support/ManualLoop.h"
#include "Support/Prelude.h"

namespace {

using namespace OrvelCore;
using namespace OrvelModes;

using Log = std::vector<std::string>;
constexpr Rect left{0, 0, 100, 100};
constexpr Rect right{100, 0, 100, 100};

class StubModeSurface final : public ModeSurface {
  public:
    StubModeSurface(Log& log, std::int64_t number) : log_(log), number_(number) {}
    std::int64_t windowNumber() const override { return number_; }
    void setContent(std::shared_ptr<OrvelBlur::PanelContent>) override {}
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

struct QuickBlurTest : testing::Test {
    Log log;
    std::vector<StubModeSurface*> made;
    std::optional<std::int64_t> front = 7;
    bool locked = false;
    QuickBlurController blur{QuickBlurSystem{
        .displays =
            [] {
                return std::vector<Rect>{right, left};
            },
        .makeSurface =
            [this](bool) {
                auto surface = std::make_unique<StubModeSurface>(log, 1);
                made.push_back(surface.get());
                return surface;
            },
        .frontApp = [this] { return front; },
        .activateOrvel = [this] { log.push_back("come forward"); },
        .activateApp =
            [this](std::int64_t pid) { log.push_back("activate " + std::to_string(pid)); },
        .reduceMotion = [] { return false; },
        .pill =
            [this](const Rect& display, const auto&) {
                log.push_back(display == left ? "pill" : "pill on the wrong display");
                return nullptr;
            },
        .macLocked = [this] { return locked; }}};
};

TEST_F(QuickBlurTest, HidesEveryDisplayAndGivesTheFrontBack) {
    blur.apply(URLCommands::Switch::on);
    blur.apply(URLCommands::Switch::on);
    EXPECT_THAT(log, ElementsAre("come forward", "show fading", "pill", "show fading", "keyboard"));
    log.clear();
    // The display at the screen's origin has the pill and the keyboard.
    const auto cancel = made.at(1)->onCancel;  // a copy, because the callback dies with its surface
    cancel();
    EXPECT_THAT(log, ElementsAre("hide fading", "hide fading", "activate 7"));
    EXPECT_FALSE(blur.isBlurred());
}

TEST_F(QuickBlurTest, DuringALockTheKeyboardAndTheHandBackWait) {
    locked = true;
    blur.toggle();
    EXPECT_THAT(log, ElementsAre("show fading", "pill", "show fading"));
    log.clear();
    blur.screensChanged();
    EXPECT_THAT(log, ElementsAre("hide", "hide", "show", "pill", "show"));
    locked = false;
    log.clear();
    blur.lockEnded();
    EXPECT_THAT(log, ElementsAre("come forward", "keyboard"));

    locked = true;
    blur.reveal();
    locked = false;
    log.clear();
    blur.lockEnded();
    blur.lockEnded();
    EXPECT_THAT(log, ElementsAre("activate 7"));
}

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

TEST(SleepController, LetsTheMachineSleepSoonAfterTheCoverOrAfterTheLimit) {
    ManualLoop loop;
    std::optional<SleepController> controller;
    bool delays = false;
    bool covers = true;
    controller.emplace(loop, SleepSources{.situation = [] { return SleepLock::Situation(); },
                                          .delaySleep = [&](bool on) { delays = on; },
                                          .lock =
                                              [&] {
                                                  if (covers) controller->screenCovered();
                                              }});
    for (const bool isCovered : {true, false}) {
        covers = isCovered;
        controller->woke();
        controller->sleepStarts();
        const double limit = isCovered ? SleepLock::settling : SleepLock::patience;
        loop.advance(limit - 0.01);
        EXPECT_TRUE(delays);
        loop.advance(0.02);
        EXPECT_FALSE(delays);
    }
}

}  // namespace
