#include <QApplication>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelModes/Blur/HotCornerController.h"
#include "OrvelModes/Feedback/ToastPresenter.h"

#include "Desktop/Image.h"
#include "Desktop/SampleWindow.h"
#include "ModesDesktop.h"

namespace {

struct CornerTest : ModesDesktopTest {
    CornerTest() {
        corner->onEnter = [this] { ++enters; };
        corner->onExit = [this] { ++exits; };
        corner->place({0, 599, 1, 1});
    }

    void point(int x, int y) {
        screen().movePointer(x, y);
        screen().sync();
    }
    bool happened(int entered, int exited) {
        return eventually([&] { return enters >= entered && exits >= exited; }) &&
               stays([&] { return enters == entered && exits == exited; });
    }

    std::unique_ptr<CornerPanel> corner = makeLiveCornerPanel();
    int enters = 0;
    int exits = 0;
};

TEST_F(CornerTest, TellsOfThePointerThatComesAndGoes) {
    point(0, 599);
    EXPECT_TRUE(happened(1, 0));
    point(1, 599);
    EXPECT_TRUE(happened(1, 1));
    point(0, 598);
    EXPECT_TRUE(happened(1, 1));

    // A window of another program covers the corner.
    const SampleWindow window(display(), {0, 400, 200, 200}, 0x00ff00, SampleWindow::Kind::popup);
    EXPECT_TRUE(eventually([&] { return top() != window.id(); }));
    point(0, 599);
    EXPECT_TRUE(happened(2, 1));
}

// The action of the corner covers it; the corner must not fire again when that cover disappears.
TEST_F(CornerTest, APointerThatRestsUnderACoverIsNoVisit) {
    const auto cover = OverlayPanel::make({0, 0, 800, 600}, WindowLevel::quickBlur);
    cover->setBackdrop(OverlayPanel::Fill{{0, 0, 1, 1}});
    const auto show = [&] {
        cover->orderFrontRegardless();
        cover->display();
        return eventually([&] { return top() == cover->windowNumber(); });
    };
    point(0, 599);
    EXPECT_TRUE(happened(1, 0));
    ASSERT_TRUE(show());
    cover->orderOut();
    EXPECT_TRUE(happened(1, 0));
    ASSERT_TRUE(show());
    point(300, 300);
    cover->orderOut();
    EXPECT_TRUE(happened(1, 1));
    point(0, 599);
    EXPECT_TRUE(happened(2, 1));
    corner = makeLiveCornerPanel();
    corner->onEnter = [this] { ++enters; };
    corner->place({0, 599, 1, 1});
    EXPECT_TRUE(happened(2, 1)) << "a pointer that is there before the corner is no visit either";
}

struct ToastWindowTest : ModesDesktopTest {
    /// The share of the pixels at the top of a display, around x = `middle`, that belong to the
    /// pill.
    static double black(int middle) {
        return screen().picture({middle - 20, 1, 40, 3}).shareOf(0x000000);
    }

    ToastPresenter toasts{loop, ToastSystem::live()};
};

TEST_F(ToastWindowTest, StandsOverTheWindowsOfItsDisplayAndTakesNoClick) {
    SampleWindow window(display(), {400, 0, 400, 300}, 0x88ccff, SampleWindow::Kind::popup);
    screen().movePointer(700, 400);
    screen().sync();
    toasts.show("Unlock your apps first", "Karvo uninstalls when nothing is locked", "hourglass");
    EXPECT_TRUE(eventually([] { return black(600) == 1; }));
    EXPECT_LT(black(200), 0.5);
    screen().click(600, 15);
    EXPECT_TRUE(eventually([&] { return window.clicks() == 1; }));
    // The next toast replaces it, on the other display.
    screen().movePointer(100, 400);
    screen().sync();
    toasts.show("Another", {}, "lock.fill");
    EXPECT_TRUE(eventually([] { return black(200) == 1 && black(600) == 0; }));
    EXPECT_TRUE(eventually([] { return std::ranges::none_of(screen().mappedWindows(), isOurs); }));
}

}  // namespace
