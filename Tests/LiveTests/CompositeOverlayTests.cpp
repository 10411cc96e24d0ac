#include <xcb/composite.h>

#include "OrvelBlur/X11/CompositeOverlay.h"

#include "BlurDesktop.h"

namespace {

constexpr std::uint32_t dark = 0x203040;

struct CompositeOverlayTest : BlurDesktopTest {
    ~CompositeOverlayTest() override {
        CompositeOverlay::shared().release();
        screen().resize(whole.width, whole.height);
    }
};

TEST_F(CompositeOverlayTest, NothingComesOverItButThePanelsOfTheLock) {
    screen().resize(780, whole.height);
    const auto lock = plain({0, 0, 400, 600}, blue, WindowLevel::lock);
    show(*lock);
    const auto window = makeWindow({100, 100, 600, 300}, green);
    ASSERT_TRUE(eventuallyShows(600, 200, green));
    ASSERT_TRUE(CompositeOverlay::shared().hold(dark));
    EXPECT_TRUE(eventuallyShows(200, 200, blue));
    for (int i = 0; i < 3; ++i) {
        raise(window);
        EXPECT_TRUE(shows(200, 200, blue));
        unmap(window);
        map(window);
        EXPECT_TRUE(shows(200, 200, blue));
    }
    const auto toast = plain({0, 0, 300, 300}, red, WindowLevel::toast);
    show(*toast);
    EXPECT_TRUE(stays([&] { return shows(200, 200, blue); }));
    screen().resize(whole.width, whole.height);
    EXPECT_TRUE(eventuallyShows(790, 300, dark));

    CompositeOverlay::shared().release();
    EXPECT_TRUE(eventuallyShows(600, 200, green));
    EXPECT_TRUE(eventuallyShows(50, 500, blue));
    EXPECT_EQ(errors, 0);
}

// Some lockers put their window into the overlay, above everything that Karvo shows.
TEST_F(CompositeOverlayTest, ALockerInsideItIsNoticedAndStaysWhenItIsReleased) {
    const auto lock = plain(whole, blue, WindowLevel::lock);
    show(*lock);
    auto& overlay = CompositeOverlay::shared();
    ASSERT_TRUE(overlay.hold(dark));
    auto* const other = screen().connection();
    const auto held = replyOf(other, xcb_composite_get_overlay_window,
                              xcb_composite_get_overlay_window_reply, screen().root());
    ASSERT_TRUE(held);
    const auto small = makeWindow({0, 0, 300, 300}, green);
    const auto locker = makeWindow(whole, red);
    for (const auto& window : {small, locker}) {
        EXPECT_FALSE(overlay.hasLocker());
        xcb_reparent_window(other, window.id, held->overlay_win, 0, 0);
        screen().sync();
    }
    EXPECT_TRUE(overlay.hasLocker());
    overlay.release();
    EXPECT_TRUE(stays([&] { return shows(200, 200, red) && overlay.hasLocker(); }));
    xcb_composite_release_overlay_window(other, held->overlay_win);
    screen().sync();
    EXPECT_FALSE(overlay.hasLocker());
    EXPECT_TRUE(eventuallyShows(200, 200, blue));
    EXPECT_EQ(errors, 0);
}

// An older panel can still be fading out when the next lock is up.
TEST_F(CompositeOverlayTest, APanelBehindANewerOneDoesNotShowThrough) {
    const auto older = plain({0, 0, 400, 600}, red, WindowLevel::lock);
    const auto newer = plain({0, 0, 400, 600}, blue, WindowLevel::lock);
    show(*older);
    show(*newer);
    ASSERT_TRUE(CompositeOverlay::shared().hold(dark));
    EXPECT_TRUE(eventuallyShows(200, 300, blue));
    older->setBackdrop(OverlayPanel::Fill{{0, 1, 0, 1}});
    older->display();
    EXPECT_TRUE(stays([&] { return shows(200, 300, blue); }));

    newer->setFrame({400, 0, 400, 600});
    newer->display();
    EXPECT_TRUE(eventuallyShows(600, 300, blue));
    EXPECT_TRUE(eventuallyShows(200, 300, green));
    newer->orderOut();
    EXPECT_TRUE(eventuallyShows(600, 300, dark));
    EXPECT_TRUE(shows(200, 300, green));
    EXPECT_EQ(errors, 0);
}

}  // namespace
