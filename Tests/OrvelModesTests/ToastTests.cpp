#include "OrvelModes/Feedback/ToastPresenter.h"

#include "Support/ManualLoop.h"
#include "Support/Prelude.h"

namespace {

using namespace OrvelModes;
using OrvelCore::Rect;

TEST(Toast, GoesAfterItsOwnFullTime) {
    double alpha = 0;
    bool reduceMotion = false;
    struct Panel final : ToastPanel {
        explicit Panel(double& shown) : alpha(shown) {}
        void show(const OrvelUI::NoticePillContent&, const Rect&) override { alpha = 1; }
        void setAlpha(double value) override {
            EXPECT_LT(value, alpha);
            EXPECT_GT(value, 0);
            alpha = value;
        }
        void orderOut() override { alpha = 0; }
        double& alpha;
    };
    ManualLoop loop;
    ToastPresenter toasts{loop,
                          {.makePanel = [&] { return std::make_unique<Panel>(alpha); },
                           .screens =
                               [] {
                                   return std::vector{Rect{0, 0, 800, 600}};
                               },
                           .pointer = [] { return OrvelCore::Point{}; },
                           .reduceMotion = [&] { return reduceMotion; },
                           .increasedContrast = [] { return false; }}};
    toasts.show("One", {}, "lock.fill");
    loop.advance(3.1);
    EXPECT_GT(alpha, 0);
    EXPECT_LT(alpha, 1);
    toasts.show("Two", {}, "lock.fill");  // while the first one fades out
    loop.advance(1);
    toasts.show("Three", {}, "lock.fill");
    loop.advance(2.9);
    EXPECT_EQ(alpha, 1);
    loop.advance(0.4);
    EXPECT_EQ(alpha, 0);
    EXPECT_EQ(loop.timerCount(), 0U);

    reduceMotion = true;
    toasts.show("Four", {}, "lock.fill");
    loop.advance(2.9);
    EXPECT_EQ(alpha, 1);
    loop.advance(0.1);
    EXPECT_EQ(alpha, 0);
}

}  // namespace
