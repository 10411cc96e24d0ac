#include "OrvelCovers/CoverController.h"

namespace {

/// The surface over window w has the number 100 + w, or 200 + w after it was recreated.
struct CoverControllerTest : testing::Test {
    struct Surface final : CoverSurface {
        Surface(std::vector<std::string>& calls, std::int64_t own) : log(calls), number(own) {}
        std::int64_t windowNumber() const override { return number; }
        void place(const Rect& rect) override { call(fmt::format("place {}", rect.x)); }
        void order(std::int64_t above) override { call(fmt::format("above {}", above)); }
        void show(bool fade) override { call(fade ? "fade in" : "show"); }
        void remove() override { call("remove"); }
        void call(std::string_view what) { log.push_back(fmt::format("{} {}", number, what)); }
        std::vector<std::string>& log;
        std::int64_t number;
    };

    std::vector<std::string> take() { return std::exchange(log, {}); }
    static CoverRequest request(std::int64_t window, double x, CoverKind kind = CoverKind::appLock,
                                std::int64_t layer = 0) {
        return {.window = window, .pid = 7, .kind = kind, .rect = {x, 0, 50, 50}, .layer = layer};
    }

    std::vector<std::string> log;
    std::map<std::int64_t, int> made;
    CoverController controller{[this](const CoverRequest& request) {
        return std::make_unique<Surface>(log, ++made[request.window] * 100 + request.window);
    }};
    /// Both covers in place, with a window of another layer between them.
    const std::vector<WindowInfo> inOrder{
        {101, 1, 0}, {1, 7, 0}, {102, 1, 0}, {9, 5, 3}, {2, 7, 0}};
};

TEST_F(CoverControllerTest, StacksCoversLikeTheirWindowsWhereTheWindowManagerPutsThemOnTop) {
    std::vector plan{request(1, 10), request(2, 20)};
    for (auto& each : plan) each.isDrawnInFront = true;
    controller.apply(plan, {{1, 7, 0}, {9, 5, 0}, {2, 7, 0}});
    const std::vector<WindowInfo> wrong{{102, 1, 0}, {101, 1, 0}, {1, 7, 0}, {9, 5, 0}, {2, 7, 0}};
    controller.apply(plan, wrong);
    take();
    controller.apply(plan, wrong);
    EXPECT_THAT(take(), ElementsAre("101 above 102"));
    controller.apply(plan, {{101, 1, 0}, {102, 1, 0}, {1, 7, 0}, {9, 5, 0}, {2, 7, 0}});
    controller.apply(plan, wrong);
    EXPECT_THAT(take(), IsEmpty()) << "does not fight the window manager";
}

TEST_F(CoverControllerTest, DoesOnlyWhatThePlanChanges) {
    const std::vector plan{request(1, 10), request(2, 20, CoverKind::privateApp)};
    controller.apply(plan, {{1, 7, 0}, {2, 7, 0}});
    EXPECT_THAT(take(), ElementsAre("101 place 10", "101 show", "101 above 1", "102 place 20",
                                    "102 fade in", "102 above 2"));
    controller.apply(plan, inOrder);
    EXPECT_THAT(take(), IsEmpty());
    auto widened = plan;
    widened[1].rect.x = 0;
    widened[1].widened = true;
    controller.apply(widened, inOrder);
    EXPECT_THAT(take(), ElementsAre("102 place 0"));
    EXPECT_TRUE(controller.request(2)->widened);
    controller.apply(widened, {{1, 7, 0}, {101, 1, 0}, {102, 1, 0}, {2, 7, 0}});
    EXPECT_THAT(take(), ElementsAre("101 above 1")) << "raised over its cover";

    controller.replaceAll();
    EXPECT_THAT(take(), ElementsAre("101 place 10", "102 place 0"));
    controller.apply({widened[1]}, inOrder);
    EXPECT_THAT(take(), ElementsAre("101 remove"));
    EXPECT_EQ(controller.surfaceNumber(1), std::nullopt);
    controller.removeAll();
    EXPECT_THAT(take(), ElementsAre("102 remove"));
    EXPECT_THAT(controller.coveredWindows(), IsEmpty());
}

TEST_F(CoverControllerTest, AChangeOfKindOrLayerTakesANewSurface) {
    controller.apply({request(1, 10, CoverKind::privateApp)}, {});
    take();
    controller.apply({request(1, 10)}, inOrder);
    EXPECT_THAT(take(), ElementsAre("101 remove", "201 place 10", "201 show", "201 above 1"));
    controller.apply({request(1, 10, CoverKind::appLock, 3)}, inOrder);
    EXPECT_THAT(take(), ElementsAre("201 remove", "301 place 10", "301 show", "301 above 1"));
    EXPECT_EQ(controller.surfaceNumber(1), 301);
}

}  // namespace
