#include <QCoreApplication>

#include "OrvelCovers/LiveCoverSurface.h"
#include "OrvelSystem/Qt/QtMainLoop.h"

#include "BlurDesktop.h"
#include "Desktop/Process.h"
#include "Desktop/SampleWindow.h"

namespace {

/// The sharpness of the grain alone is slightly lower; that of an uncovered window is several times
/// higher.
constexpr double blurred = 25;

struct CoverSurfaceTest : BlurDesktopTest {
    static constexpr Area place{200, 150, 300, 200};

    // Wait until the server has freed the resources of the test.
    ~CoverSurfaceTest() override { carryOut(); }

    /// Fills a window with fine green and blue detail, so red always comes from something else.
    Window makeDetail(Area area) {
        const auto window = makeWindow(area, green);
        auto* const c = screen().connection();
        constexpr int size = 64;
        Image tile = blocks(size, size, 2);
        for (auto& pixel : tile.pixels) pixel &= 0x00ffff;
        const std::uint32_t pixmap = xcb_generate_id(c);
        const std::uint32_t context = xcb_generate_id(c);
        xcb_create_pixmap(c, 24, pixmap, window.id, size, size);
        xcb_create_gc(c, context, pixmap, 0, nullptr);
        xcb_put_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, size, size, 0, 0, 0, 24,
                      size * size * sizeof(Colour),
                      reinterpret_cast<const std::uint8_t*>(tile.pixels.data()));
        xcb_change_window_attributes(c, window.id, XCB_CW_BACK_PIXMAP, &pixmap);
        xcb_clear_area(c, 0, window.id, 0, 0, 0, 0);
        xcb_free_gc(c, context);
        xcb_free_pixmap(c, pixmap);
        screen().sync();
        return window;
    }

    static Rect rect(Area area, double margin = 0) {
        return {area.x - margin, area.y - margin, area.width + 2 * margin,
                area.height + 2 * margin};
    }

    /// Creates a cover the way the controller does.
    std::unique_ptr<LiveCoverSurface> cover(const Window& target,
                                            CoverKind kind = CoverKind::appLock) {
        const CoverRequest request{.window = target.id, .kind = kind, .rect = rect(target.area, 1)};
        LiveCoverSurface::Environment environment{.loop = loop,
                                                  .displays = [this] { return displays; },
                                                  .reduceTransparency = [] { return false; }};
        auto surface =
            std::make_unique<LiveCoverSurface>(request, environment, [this] { ++unlockRequests; });
        surface->place(request.rect);
        surface->show(kind == CoverKind::privateApp);
        surface->order(target.id);
        return surface;
    }

    bool isBlurred(Area area) { return screen().picture(area).sharpness() < blurred; }
    bool eventuallyBlurred(Area area) {
        return eventually([=, this] { return isBlurred(area); });
    }
    /// Waits until the server has carried out all requests of this program.
    static void carryOut() {
        auto* const c = X11::shared().connection();
        replyOf(c, xcb_get_input_focus, xcb_get_input_focus_reply);
    }

    QtMainLoop loop;
    std::vector<Rect> displays{rect(whole)};
    int unlockRequests = 0;
};

TEST_F(CoverSurfaceTest, itsFirstFrameHidesTheWindowAndOnlyThat) {
    const auto target = makeDetail(place);
    constexpr Area front{350, 100, 400, 150};
    makeWindow(front, red);
    ASSERT_FALSE(isBlurred(place));
    const Image before = screen().picture();

    const auto surface = cover(target);
    carryOut();
    Image first = screen().picture();
    EXPECT_EQ(first.crop(front).shareOf(red), 1) << "what stands in front stays in front";
    for (const Area& part : {Area{200, 150, 150, 200},
                             {350, 250, 150, 100},
                             {200, 150, 5, 5},
                             {200, 345, 5, 5},
                             {495, 345, 5, 5}})
        EXPECT_LT(first.crop(part).sharpness(), blurred) << part.x << " " << part.y;
    int mostRed = 0;
    for (const Area& part : {Area{200, 150, 150, 200}, {350, 250, 150, 100}}) {
        for (const Colour pixel : first.crop(part).pixels)
            mostRed = std::max(mostRed, static_cast<int>(pixel >> 16));
    }
    EXPECT_LT(mostRed, 12) << "nothing of what stands in front is in the blur";

    const Image later = settled();
    EXPECT_LT(difference(first, later), 1) << "the change to the live picture is not visible";
    Image around = later;
    Image aroundBefore = before;
    for (Image* const image : {&around, &aroundBefore})
        image->fill({place.x - 1, place.y - 1, place.width + 2, place.height + 2}, 0);
    EXPECT_EQ(around.pixels, aroundBefore.pixels);

    surface->remove();
    carryOut();
    EXPECT_EQ(screen().picture().pixels, before.pixels);
}

/// Runs with and without a compositing manager, which reads the screen at any time.
struct CoverMovesTest : CoverSurfaceTest, testing::WithParamInterface<bool> {
    CoverMovesTest() {
        if (!GetParam()) return;
        compositor.emplace(
            DesktopTest::Arguments{"picom", "--backend", "xrender", "--config", "/dev/null"},
            DesktopTest::Environment{{"PATH", std::getenv("PATH")}, {"DISPLAY", display()}});
        eventually([this] { return screen().hasOwner("_NET_WM_CM_S0"); });
    }
    std::optional<DesktopTest::Process> compositor;
};

// A second client samples the screen as fast as it can.
TEST_P(CoverMovesTest, noFrameShowsTheWindowWhileTheCoverGrowsAndShrinks) {
    const auto target = makeDetail(place);
    const auto surface = cover(target);
    ASSERT_TRUE(eventuallyBlurred(place));
    const double brightness = settled(place).meanBrightness();
    std::atomic<bool> isOver = false;
    std::atomic<int> looks = 0;
    double sharpest = 0;
    double darkest = 255;
    std::thread eye([&] {
        Screen own(display());
        while (!isOver) {
            const Image seen = own.picture(place);
            sharpest = std::max(sharpest, seen.sharpness());
            darkest = std::min(darkest, seen.meanBrightness());
            ++looks;
        }
    });
    for (int round = 0; round < 60 || looks < 100; ++round) {
        for (const auto& at :
             {rect(whole), Rect{100, 50, 600, 500}, rect(place, 30), rect(place, 1)}) {
            surface->place(at);
            // Windows move far more slowly than the server could be asked to.
            carryOut();
            QCoreApplication::processEvents();
        }
    }
    isOver = true;
    eye.join();
    EXPECT_LT(sharpest, blurred);
    EXPECT_GT(darkest, brightness * 0.7);
}
INSTANTIATE_TEST_SUITE_P(Composited, CoverMovesTest, testing::Bool());

TEST_F(CoverSurfaceTest, overTheDisplayItBlursAllThatLiesBelowWhileTheWindowMoves) {
    const auto other = makeDetail({20, 400, 150, 150});
    const auto target = makeDetail(place);
    const auto front = makeWindow({600, 20, 150, 100}, red);
    const auto surface = cover(target);
    settled({0, 0, 1, 1});
    surface->place(rect(whole));
    carryOut();
    EXPECT_TRUE(isBlurred(other.area));
    EXPECT_TRUE(isBlurred({0, 0, 590, 600}));
    EXPECT_EQ(screen().picture(front.area).shareOf(red), 1);
    recolour(other, 0xffffff);
    EXPECT_TRUE(eventually([this] {
        return screen().picture({90, 470, 10, 10}).meanBrightness() > 180;
    })) << "also what no cover showed before";
    for (std::uint32_t x = 200; x > 20; x -= 20) {
        configure(target, XCB_CONFIG_WINDOW_X, {x});
        EXPECT_TRUE(isBlurred({0, 0, 590, 600})) << x;
        QCoreApplication::processEvents();
    }
    surface->place({19, 149, 302, 202});
    EXPECT_TRUE(eventuallyBlurred({20, 150, 300, 200}));
    EXPECT_TRUE(eventuallyShows(90, 470, 0xffffff, 0));
}

TEST_F(CoverSurfaceTest, keepsItsPlaceAmongTheWindows) {
    const auto target = makeDetail(place);
    const auto surface = cover(target);
    const auto front = makeWindow({250, 200, 50, 50}, red);
    raise(target);
    raise(front);
    EXPECT_FALSE(isBlurred(place));
    surface->order(target.id);
    carryOut();
    EXPECT_TRUE(isBlurred({310, 150, 190, 200}));
    EXPECT_EQ(screen().picture(front.area).shareOf(red), 1);
    EXPECT_EQ(static_cast<std::int64_t>(screen().mappedWindows().rbegin()[1]),
              surface->windowNumber());

    X11OverlayPanel badge({280, 220, 100, 20}, 0);
    badge.orderAbove(surface->frontNumber());
    badge.display();
    raise(target);
    surface->order(target.id);
    carryOut();
    EXPECT_EQ(screen().mappedWindows().back(), badge.windowNumber()) << "what stands on it follows";
    badge.orderOut();
    raise(front);

    destroy(target);
    surface->order(target.id);
    carryOut();
    EXPECT_EQ(screen().picture(front.area).shareOf(red), 1) << "no effect";
}

TEST_F(CoverSurfaceTest, aWindowOverTwoDisplaysHasTwoPieces) {
    const auto target = makeDetail(place);
    displays = {{0, 0, 400, 600}, {400, 0, 400, 600}};
    const auto panels = screen().mappedWindows().size();
    const auto surface = cover(target);
    carryOut();
    EXPECT_EQ(screen().mappedWindows().size(), panels + 2);
    EXPECT_TRUE(isBlurred(place)) << "also where they meet";
    const auto expectOrder = [&] {
        const auto windows = screen().mappedWindows();
        EXPECT_EQ(static_cast<std::int64_t>(*++std::ranges::find(windows, target.id)),
                  surface->windowNumber())
            << "directly above its window";
        EXPECT_EQ(static_cast<std::int64_t>(windows.back()), surface->frontNumber());
    };
    expectOrder();
    displays = {rect(whole)};
    surface->place(rect(place, 1));
    carryOut();
    EXPECT_EQ(screen().mappedWindows().size(), panels + 1);
    EXPECT_TRUE(isBlurred(place));
    displays = {{0, 0, 400, 600}, {400, 0, 400, 600}};
    surface->place(rect(place, 1));
    carryOut();
    EXPECT_EQ(screen().mappedWindows().size(), panels + 2);
    EXPECT_TRUE(isBlurred(place)) << "a piece that joins later is at full strength";
    expectOrder();
}

}  // namespace
