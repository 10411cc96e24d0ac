#include <unistd.h>

#include "OrvelBlur/Linux/PanelStack.h"
#include "OrvelCovers/WindowWatcher.h"
#include "OrvelModes/FocusBlurController.h"
#include "OrvelModes/QuickBlurController.h"
#include "OrvelSystem/Linux/ActiveWindow.h"
#include "OrvelSystem/Linux/X11.h"

#include "Desktop/SampleWindow.h"
#include "ModesDesktop.h"

using namespace DesktopTest;
using namespace OrvelModes;
using OrvelBlur::OverlayPanel;
using OrvelBlur::PanelStack;
namespace WindowLevel = OrvelBlur::WindowLevel;

namespace {

constexpr auto backend = OrvelBlur::BlurBackend::skyLight;

OrvelCore::OverlayLook look() {
    return OrvelCore::OverlayLook::standardMode;
}

struct QuickBlurTest : ModesDesktopTest {
    ~QuickBlurTest() override { PanelStack::shared().setYielding(false); }

    bool isUp() {
        return eventually([] {
            const auto windows = screen().mappedWindows();
            return windows.size() > 1 && isOurs(windows.back()) &&
                   isOurs(windows[windows.size() - 2]);
        });
    }

    QuickBlurController blur{
        QuickBlurSystem::live(loop, backend, getpid(), look, [] { return false; })};
};

TEST_F(QuickBlurTest, StaysOverWhatComesLaterButNotOverALock) {
    blur.blur();
    ASSERT_TRUE(isUp());
    const std::string display = std::getenv("DISPLAY");
    SampleWindow popup(display, {100, 100, 200, 200}, 0x00ff00, SampleWindow::Kind::popup);
    EXPECT_TRUE(eventually([&] { return place(popup.id()) < 2 && isOurs(top()); })) << "mapped";
    popup.raise();
    EXPECT_TRUE(eventually([&] { return isOurs(top()); })) << "raised";
    EXPECT_TRUE(stays([&] {
        return isOurs(top()) && screen().picture({100, 100, 200, 200}).shareOf(0x00ff00) == 0;
    }));

    const auto lock = OverlayPanel::make({0, 0, 800, 600}, WindowLevel::lock);
    lock->setBackdrop(OverlayPanel::Fill{{0, 0, 1, 1}});
    lock->orderFrontRegardless();
    lock->display();
    popup.raise();
    EXPECT_TRUE(eventually([&] { return top() == lock->windowNumber(); }));
    EXPECT_TRUE(stays([&] { return top() == lock->windowNumber(); }));
    lock->orderOut();

    PanelStack::shared().setYielding(true);
    popup.raise();
    EXPECT_TRUE(eventually([&] { return top() == popup.id(); }));
    EXPECT_TRUE(stays([&] { return top() == popup.id(); }));
}

TEST_F(QuickBlurTest, EscapeAndThePillRevealAndGiveTheKeyboardBack) {
    addApp("writer", {60, 80, 250, 200});
    const auto app = screen().activeWindow();
    const auto isRevealed = [&] {
        return eventually(
            [&] { return !blur.isBlurred() && screen().focusedWindow() == app && !isOurs(top()); });
    };
    blur.blur();
    ASSERT_TRUE(isUp());
    ASSERT_TRUE(eventually([&] { return screen().focusedWindow() != app; }));
    // The pill hangs in the middle of the primary display, and nowhere else.
    const auto isBlack = [&](int x) {
        return screen().picture({x - 10, 1, 20, 1}).shareOf(0x000000) == 1;
    };
    EXPECT_TRUE(eventually([&] { return isBlack(200); }));
    EXPECT_FALSE(isBlack(600));
    keepPicture("quick-blur", {0, 0, 400, 200});
    screen().click(200, 400);
    EXPECT_TRUE(stays([&] { return blur.isBlurred(); })) << "clicks are swallowed";
    screen().press({XK_Escape});
    EXPECT_TRUE(isRevealed());

    blur.blur();
    ASSERT_TRUE(eventually([&] { return isBlack(200); }));
    screen().click(200, 15);
    EXPECT_TRUE(isRevealed());

    // A window that opens meanwhile gets the keyboard from the window manager, not for long.
    blur.blur();
    ASSERT_TRUE(eventually([&] { return screen().focusedWindow() != app; }));
    addApp("intruder", {60, 80, 100, 100});
    const auto intruder = screen().activeWindow();
    EXPECT_TRUE(eventually([&] { return screen().focusedWindow() != intruder; }));
    screen().press({XK_Escape});
    EXPECT_TRUE(eventually([&] { return !blur.isBlurred(); }));
}

struct FocusBlurTest : ModesDesktopTest {
    FocusBlurTest() {
        focus.onRunningChanged = [this](bool isRunning) {
            isRunning ? watcher.start() : watcher.stop();
        };
        focus.onSampled = [this](auto snapshot) { watcher.publish(std::move(snapshot)); };
    }
    ~FocusBlurTest() override { focus.turnOff(); }

    /// The overlay of the left display stands between these two.
    static bool isBetween(xcb_window_t upper, xcb_window_t lower) {
        const auto windows = screen().mappedWindows();
        const auto at = place(upper);
        return at > 0 && at < windows.size() && isOurs(windows[at - 1]) &&
               screen().areaOf(windows[at - 1]).x == 0 && place(lower) < at - 1;
    }

    FocusBlurController focus{FocusBlurSystem::live(loop, backend, getpid(), look)};
    OrvelCovers::WindowWatcher watcher{OrvelCovers::WindowWatcher::Reads::live(),
                                       [this] { loop.post([this] { focus.sample(); }); }};
    std::shared_ptr<void> activations =
        OrvelSystem::ActiveWindow::shared().observe([this](const auto&) { focus.sample(); });
};

TEST_F(FocusBlurTest, OnlyTheWindowInUseIsClear) {
    const auto first = addApp("first", {40, 60, 150, 200});
    const auto second = addApp("second", {120, 150, 200, 300});
    focus.turnOn();
    ASSERT_TRUE(eventually([&] { return isBetween(second, first); }));

    // A desktop at rest is left alone.
    int moves = 0;
    const auto watch = OrvelSystem::X11::shared().onEvent(
        [&](const auto& event) { moves += (event.response_type & 0x7F) == XCB_CONFIGURE_NOTIFY; });
    OrvelSystem::X11::shared().selectOnRoot(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    eventually([&] { return stays([&, before = moves] { return moves == before; }); });
    moves = 0;
    focus.sample();
    EXPECT_TRUE(stays([&] { return moves == 0; }));

    // The click goes through the overlay to the window below, and the overlay follows.
    screen().click(80, 120);
    EXPECT_TRUE(eventually([&] { return isBetween(first, second); }));
    focus.turnOff();
    EXPECT_TRUE(eventually([] { return std::ranges::none_of(screen().mappedWindows(), isOurs); }));
}

}  // namespace
