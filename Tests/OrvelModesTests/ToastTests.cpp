#include "OrvelModes/Feedback/ToastPresenter.h"

#include "Support/ManualLoop.h"
#include "Support/Prelude.h"

namespace {

using namespace OrvelModes;
using OrvelCore::Point;
using OrvelCore::Rect;

/// Records the calls to its only panel.
class ToastTest : public testing::Test {
  protected:
    struct Panel final : ToastPanel {
        explicit Panel(ToastTest& owner) : test(owner) {}
        void show(const OrvelUI::NoticePillContent& notice, const Rect& display) override {
            test.log.push_back(fmt::format("{} at {}", notice.accessibleName, display.x));
            test.alpha = 1;
        }
        void setAlpha(double value) override {
            EXPECT_LT(value, test.alpha);
            EXPECT_GT(value, 0);
            test.alpha = value;
        }
        void orderOut() override { test.alpha = 0; }
        ToastTest& test;
    };

    ManualLoop loop;
    std::vector<std::string> log;
    double alpha = 0;
    int panels = 0;
    bool reduceMotion = false;
    std::vector<Rect> screens{{0, 0, 800, 600}, {800, 0, 800, 600}};
    Point pointer{900, 300};
    ToastPresenter toasts{loop,
                          {.makePanel =
                               [this] {
                                   ++panels;
                                   return std::make_unique<Panel>(*this);
                               },
                           .screens = [this] { return screens; },
                           .pointer = [this] { return pointer; },
                           .reduceMotion = [this] { return reduceMotion; },
                           .increasedContrast = [] { return false; }}};
};

TEST_F(ToastTest, StandsOnTheDisplayUnderThePointer) {
    toasts.show("One", "More", "lock.fill");
    pointer = {10, 10};
    toasts.show("Two", {}, "lock.fill");
    pointer = {5000, 10};
    toasts.show("Three", {}, "lock.fill");
    screens.clear();
    toasts.show("Four", {}, "lock.fill");
    EXPECT_THAT(log, ElementsAre("One. More at 800", "Two at 0", "Three at 0"));
    EXPECT_EQ(panels, 1);
}

TEST_F(ToastTest, GoesAfterItsOwnFullTime) {
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
