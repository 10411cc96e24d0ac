#include "OrvelBlur/BlurSurface.h"

#include "StubOverlayPanel.h"
#include "Support/ManualLoop.h"

namespace {

using Layer = OverlayPanel::Layer;

constexpr double tick = 1.0 / 60;
const Color tint{0.1, 0.2, 0.3, 0.4};

struct BlurSurfaceTest : testing::Test {
    // Starting at zero makes a whole number of ticks divide a duration exactly.
    ManualLoop loop{0};
    PanelRecord panel;
    std::unique_ptr<BlurSurface> surface = make(BlurBackend::skyLight);
    int completions = 0;

    std::unique_ptr<BlurSurface> make(BlurBackend backend, std::optional<Color> fill = {},
                                      double cornerRadius = 0) {
        return std::make_unique<BlurSurface>(std::make_unique<StubOverlayPanel>(panel), backend,
                                             tint, fill, cornerRadius, loop);
    }
    std::function<void()> complete() {
        return [this] { ++completions; };
    }
    std::vector<Frame> takeFrames() { return std::exchange(panel.frames, {}); }
    void expectAtRest() const { EXPECT_EQ(loop.timerCount(), 0U); }
};

TEST_F(BlurSurfaceTest, aFillComesBeforeEveryBlur) {
    using Backdrop = OverlayPanel::Backdrop;
    const Color grey{0.5, 0.5, 0.5, 1};
    for (const auto& [backend, fill, backdrop] :
         std::vector<std::tuple<BlurBackend, std::optional<Color>, Backdrop>>{
             {BlurBackend::skyLight, {}, OverlayPanel::ServerBlur{}},
             {BlurBackend::visualEffect, {}, OverlayPanel::VisualEffect{}},
             {BlurBackend::skyLight, grey, OverlayPanel::Fill{grey}},
             {BlurBackend::visualEffect, grey, OverlayPanel::Fill{grey}}}) {
        make(backend, fill);
        EXPECT_EQ(panel.backdrop, backdrop);
    }
}

TEST_F(BlurSurfaceTest, withoutADurationAllHappensAtOnce) {
    for (const double duration : {0.0, -1.0}) {
        surface->show(28, duration);
        EXPECT_TRUE(panel.visible);
        EXPECT_THAT(takeFrames(), ElementsAre(Frame{1, 28}));
        expectAtRest();

        completions = 0;
        surface->hide(duration, [this] {
            EXPECT_FALSE(panel.visible) << "hidden before the completion is called";
            ++completions;
        });
        EXPECT_EQ(completions, 1);
        EXPECT_EQ(surface->progress(), 0);
        EXPECT_EQ(surface->currentRadius(), 0);
        takeFrames();
        expectAtRest();
    }
}

TEST_F(BlurSurfaceTest, aRampEasesOutAndRoundsHalvesAwayFromZero) {
    surface->show(28, 4 * tick);
    EXPECT_THAT(takeFrames(), ElementsAre(Frame{0, 0}))
        << "visible at once, not with the first tick";
    EXPECT_TRUE(surface->isRamping());
    loop.advance(4 * tick);
    // Rounded from 16.1875, 24.5 and 27.5625.
    EXPECT_THAT(takeFrames(), ElementsAre(Frame{0.578125, 16}, Frame{0.875, 25},
                                          Frame{0.984375, 28}, Frame{1, 28}));
    EXPECT_FALSE(surface->isRamping());
    for (const auto& [layer, opacity] : panel.opacities) EXPECT_EQ(opacity, 1);
    expectAtRest();
}

TEST_F(BlurSurfaceTest, aHideTurnsAShowAroundFromWhereItStands) {
    surface->show(28, 4 * tick);
    loop.advance(2 * tick);
    takeFrames();
    surface->hide(2 * tick, complete());
    loop.advance(tick);
    // One eighth of 0.875 and of 25.
    EXPECT_NEAR(panel.frames.back().opacity, 0.109375, 1e-9);
    EXPECT_EQ(panel.frames.back().radius, 3);
    EXPECT_EQ(completions, 0);
    EXPECT_TRUE(panel.visible);
    loop.advance(tick);
    EXPECT_EQ(panel.frames.back(), (Frame{0, 0}));
    EXPECT_FALSE(panel.visible);
    loop.advance(1);
    EXPECT_EQ(completions, 1);
    expectAtRest();
}

TEST_F(BlurSurfaceTest, anInterruptedHideDoesNotComplete) {
    const std::vector<std::pair<const char*, std::function<void()>>> interruptions{
        {"show", [this] { surface->show(20, 2 * tick); }},
        {"show at once", [this] { surface->show(20, 0); }},
        {"hide", [this] { surface->hide(2 * tick, nullptr); }},
        {"remove", [this] { surface->remove(); }},
        {"destruction", [this] { surface.reset(); }},
    };
    for (const auto& [name, interrupt] : interruptions) {
        surface = make(BlurBackend::skyLight);
        surface->show(28, 0);
        surface->hide(4 * tick, complete());
        loop.advance(2 * tick);
        interrupt();
        loop.advance(1);
        EXPECT_EQ(completions, 0) << name;
        expectAtRest();
        if (std::string_view(name).starts_with("show")) {
            EXPECT_TRUE(panel.visible);
            EXPECT_EQ(panel.frames.back(), (Frame{1, 20}));
        }
    }
}

TEST_F(BlurSurfaceTest, aCompletionMayShowAgainOrDestroyTheSurface) {
    for (const double duration : {0.0, 2 * tick}) {
        surface = make(BlurBackend::skyLight);
        surface->show(28, 0);
        surface->hide(duration, [this] { surface->show(10, 2 * tick); });
        loop.advance(1);
        EXPECT_TRUE(panel.visible);
        EXPECT_EQ(surface->progress(), 1);

        const auto token = std::make_shared<int>();
        surface->hide(duration, [this, token] {
            surface.reset();
            ++completions;
            EXPECT_EQ(*token, 0);
        });
        loop.advance(1);
        EXPECT_EQ(surface, nullptr);
        EXPECT_EQ(token.use_count(), 1);
        expectAtRest();
    }
    EXPECT_EQ(completions, 2);
}

}  // namespace
