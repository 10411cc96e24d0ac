#include <QCoreApplication>
#include <QLineEdit>
#include <QPainter>

#include <xcb/res.h>

#include "OrvelBlur/BlurSurface.h"
#include "OrvelBlur/Qt/QtPanelContent.h"
#include "OrvelSystem/Qt/QtMainLoop.h"

#include "BlurDesktop.h"
#include "Desktop/SampleWindow.h"

namespace {

using Layer = OverlayPanel::Layer;
using OverlayPanelTest = BlurDesktopTest;

/// Black and white stripes, one pixel wide each.
class Stripes final : public QWidget {
  public:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        for (int x = 0; x < width(); x += 2) painter.fillRect(x, 0, 1, height(), Qt::black);
    }
};

/// As if Qt were too busy to paint.
struct Unpainted final : QWidget {
    Unpainted() { setUpdatesEnabled(false); }
};

/// Content of 200 by 100 pixels in the middle of the panel, created anew each time the panel
/// requests it.
template <class Widget>
std::shared_ptr<QtPanelContent> content(Widget** made = nullptr) {
    return std::make_shared<QtPanelContent>(
        [made] {
            auto widget = std::make_unique<Widget>();
            if (made != nullptr) *made = widget.get();
            return widget;
        },
        [](const QWidget&, const QSize& panel) {
            return QRect(panel.width() / 2 - 100, panel.height() / 2 - 50, 200, 100);
        });
}

TEST_F(OverlayPanelTest, hidesDetailKeepsTheColoursAndLeavesTheScreenAsItWas) {
    const Image before = settled();
    constexpr Area area{100, 100, 500, 400};
    const auto panel = blurring(area);
    show(*panel);
    const Image during = settled();
    const Image covered = during.crop(area);
    EXPECT_LT(covered.sharpness(), before.crop(area).sharpness() / 30);
    EXPECT_NEAR(covered.meanBrightness(), before.crop(area).meanBrightness(), 6);
    Image around = during;
    Image aroundBefore = before;
    around.fill(area, 0);
    aroundBefore.fill(area, 0);
    EXPECT_EQ(around.pixels, aroundBefore.pixels);

    panel->orderOut();
    EXPECT_TRUE(eventually([&] { return screen().picture().pixels == before.pixels; }));
    EXPECT_EQ(errors, 0);
}

// A blurred edge is the integral of the blur's bell curve, so its steps have the standard deviation
// of the curve.
TEST_F(OverlayPanelTest, theRadiusIsThatOfTheBlur) {
    Image edge(whole.width, whole.height, 0);
    edge.fill({400, 0, 400, 600}, 0xffffff);
    screen().paintBackground(edge);
    const auto panel = blurring(whole);
    panel->setOpacity(Layer::grain, 0);
    double last = 0;
    for (const int radius : {6, 12, 20, 28, 40, 64}) {
        show(*panel, radius);
        const Image row = settled({0, 300, 800, 1});
        double sum = 0;
        double mean = 0;
        for (int x = 1; x < row.width; ++x) {
            const double step = row.brightness(x, 0) - row.brightness(x - 1, 0);
            EXPECT_GE(step, 0) << "no ringing";
            sum += step;
            mean += x * step;
        }
        mean /= sum;
        double variance = 0;
        for (int x = 1; x < row.width; ++x)
            variance +=
                (x - mean) * (x - mean) * (row.brightness(x, 0) - row.brightness(x - 1, 0)) / sum;
        EXPECT_NEAR(mean, 400, 2) << radius;
        EXPECT_NEAR(std::sqrt(variance), 0.6 * radius, 0.3 * 0.6 * radius) << radius;
        EXPECT_GT(variance, last) << radius;
        last = variance;
    }
}

TEST_F(OverlayPanelTest, theTintLiesOverTheBlurAsStrongAsItIsSet) {
    makeWindow(whole, 0x808080);
    const auto panel = blurring(whole);
    panel->setTint({1, 0, 0, 0.5});
    for (const double opacity : {0.0, 0.25, 0.5, 1.0}) {
        show(*panel);
        panel->setOpacity(Layer::tint, opacity);
        panel->display();
        const auto mixed = [opacity](double to) {
            return static_cast<Colour>(std::lround(128 + (to - 128) * 0.5 * opacity));
        };
        EXPECT_TRUE(eventuallyShows(400, 300, mixed(255) << 16 | mixed(0) << 8 | mixed(0)))
            << opacity;
    }
}

TEST_F(OverlayPanelTest, roundCornersAreNeitherDrawnNorClicked) {
    makeWindow(whole, blue);
    SampleWindow below(display(), {100, 100, 300, 200}, green, SampleWindow::Kind::popup);
    const auto panel = plain({100, 100, 300, 200}, red);
    int clicks = 0;
    panel->onClick = [&clicks] { ++clicks; };
    panel->setCornerRadius(30);
    show(*panel);
    EXPECT_TRUE(eventuallyShows(250, 200, red));
    const int corners[4][2] = {{103, 103}, {396, 103}, {103, 296}, {396, 296}};
    for (const auto& [x, y] : corners) {
        EXPECT_TRUE(shows(x, y, green));
        screen().click(x, y);
    }
    for (const auto& [x, y] : {std::pair(250, 100), {100, 200}, {399, 200}, {250, 299}})
        EXPECT_TRUE(shows(x, y, red));
    EXPECT_TRUE(eventually([&] { return below.clicks() == 4; }));
    EXPECT_EQ(clicks, 0);

    panel->setFrame({100, 100, 200, 200});
    panel->display();
    EXPECT_TRUE(eventuallyShows(296, 103, green));
    EXPECT_TRUE(shows(200, 200, red));
    // The window below draws what it now shows in its own time.
    EXPECT_TRUE(eventuallyShows(350, 200, green));
    panel->setCornerRadius(0);
    EXPECT_TRUE(eventuallyShows(101, 101, red));
    EXPECT_EQ(errors, 0);
}

TEST_F(OverlayPanelTest, theBackdropFollowsTheWindowsBehindIt) {
    const auto back = makeWindow(whole, 0x808080);
    const auto window = makeWindow({200, 150, 400, 300}, red);
    const auto panel = blurring(whole);
    show(*panel, 20);
    EXPECT_TRUE(eventuallyShows(400, 300, red));

    recolour(window, green);
    EXPECT_TRUE(eventuallyShows(400, 300, green)) << "redrawn";
    configure(window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, {0, 0});
    EXPECT_TRUE(eventuallyShows(500, 400, 0x808080)) << "moved away";
    EXPECT_TRUE(eventuallyShows(100, 100, green));
    configure(window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, {800, 600});
    EXPECT_TRUE(eventuallyShows(700, 500, green)) << "grown";

    const auto front = makeWindow({300, 200, 300, 200}, blue);
    EXPECT_TRUE(eventuallyShows(301, 300, blue)) << "over the panel, so not blurred";
    panel->orderFrontRegardless();
    panel->display();
    EXPECT_TRUE(eventually([&] { return !shows(301, 300, blue); }));
    EXPECT_TRUE(eventuallyShows(450, 300, blue)) << "behind it, once the panel is raised";
    recolour(window, red);
    EXPECT_TRUE(eventuallyShows(700, 500, red));
    EXPECT_TRUE(shows(450, 300, blue));
    unmap(front);
    EXPECT_TRUE(eventuallyShows(450, 300, red)) << "what was obscured all the time is up to date";
    destroy(window);
    EXPECT_TRUE(eventuallyShows(450, 300, 0x808080));
    recolour(back, blue);
    EXPECT_TRUE(eventuallyShows(450, 300, blue));
}

TEST_F(OverlayPanelTest, aBackdropDrawnInPartsLooksAsIfDrawnAtOnce) {
    makeWindow(whole, 0x808080);
    const auto one = makeWindow({100, 100, 300, 200}, red);
    const auto two = makeWindow({250, 200, 300, 250}, green);
    const auto three = makeWindow({500, 50, 200, 500}, blue);
    const auto panel = blurring(whole);
    const std::function<void()> changes[] = {
        [&] {
            configure(one, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, {173, 91});
        },
        [&] { configure(one, XCB_CONFIG_WINDOW_STACK_MODE, {XCB_STACK_MODE_ABOVE}); },
        [&] { configure(three, XCB_CONFIG_WINDOW_WIDTH, {87}); },
        [&] { recolour(two, 0xffffff); },
        [&] { unmap(three); },
        [&] {
            configure(two, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, {3, 333});
        },
        [&] { map(three); }};
    for (const int radius : {8, 28}) {
        show(*panel, radius);
        for (const auto& change : changes) {
            // A panel over a display stays above the windows only when it is raised again.
            change();
            panel->orderFrontRegardless();
            panel->display();
            settled();
        }
        const auto inParts = settled();
        panel->orderOut();
        settled();
        show(*panel, radius);
        EXPECT_EQ(shareChanged(inParts, settled(), 2), 0) << radius;
        panel->orderOut();
    }
}

// The pixmap of a window changes each time the window is mapped or resized.
TEST_F(OverlayPanelTest, theBackdropFollowsAWindowThatComesBackAtOnce) {
    makeWindow(whole, 0x808080);
    const auto window = makeWindow({200, 150, 400, 300}, red);
    const auto panel = blurring(whole);
    show(*panel, 20);
    EXPECT_TRUE(eventuallyShows(400, 300, red));
    settled();
    atomically([&] {
        xcb_unmap_window(screen().connection(), window.id);
        xcb_map_window(screen().connection(), window.id);
    });
    settled();
    recolour(window, green);
    EXPECT_TRUE(eventuallyShows(400, 300, green)) << "mapped anew";
    settled();
    atomically([&] {
        for (const std::uint32_t width : {100U, 400U})
            xcb_configure_window(screen().connection(), window.id, XCB_CONFIG_WINDOW_WIDTH, &width);
    });
    settled();
    recolour(window, blue);
    EXPECT_TRUE(eventuallyShows(400, 300, blue)) << "resized and back";
}

TEST_F(OverlayPanelTest, contentIsSharpOnTopAndFadesWithItsOpacity) {
    makeWindow(whole, 0x808080);
    const auto panel = blurring({100, 100, 400, 300});
    show(*panel);
    panel->setContent(content<Stripes>());
    panel->display();
    ASSERT_TRUE(eventuallyShows(200, 250, 0x000000));
    EXPECT_TRUE(shows(201, 250, 0xffffff));
    panel->setOpacity(Layer::content, 0.5);
    panel->display();
    EXPECT_TRUE(eventuallyShows(200, 250, 0x404040));
    EXPECT_TRUE(shows(201, 250, 0xc0c0c0));
    panel->setContent(nullptr);
    panel->display();
    EXPECT_TRUE(eventuallyShows(200, 250, 0x808080));
    EXPECT_LT(settled({100, 100, 400, 300}).sharpness(), 1);
    EXPECT_EQ(errors, 0);
}

TEST_F(OverlayPanelTest, contentThatIsNotPaintedYetShowsNothingOfTheScreen) {
    const auto panel = blurring(whole);
    show(*panel, 0);
    Unpainted* widget = nullptr;
    panel->setContent(content<Unpainted>(&widget));
    ASSERT_TRUE(eventually([&] { return widget != nullptr; }));
    show(*panel, 28);
    EXPECT_LT(settled({300, 250, 200, 100}).sharpness(), 2);
}

TEST_F(OverlayPanelTest, typingGoesToTheContentAfterAnotherWindowHadTheKeyboard) {
    SampleWindow other(display(), {600, 400, 100, 100}, green, SampleWindow::Kind::popup);
    QLineEdit* field = nullptr;
    const auto panel = blurring({100, 100, 400, 300});
    int changes = 0;
    int cancels = 0;
    panel->onKeyChanged = [&changes] { ++changes; };
    panel->onCancel = [&cancels] { ++cancels; };
    panel->setContent(content<QLineEdit>(&field));
    show(*panel);
    ASSERT_TRUE(eventually([&] { return field != nullptr; }));

    panel->makeKeyAndOrderFront();
    EXPECT_FALSE(panel->isKeyWindow()) << "does not take the keyboard unless it may";
    EXPECT_FALSE(panel->owns(screen().focusedWindow()));

    panel->acceptsKeyboard = true;
    std::string typed;
    for (int round = 1; round <= 3; ++round) {
        // The click makes the newest event with a timestamp older than the other window's focus
        // change.
        screen().click(110, 110);
        settled({0, 0, 1, 1});
        other.takeFocus();
        ASSERT_TRUE(eventually([&] { return other.hasFocus() && !panel->isKeyWindow(); }));
        panel->makeKeyAndOrderFront();
        EXPECT_TRUE(panel->isKeyWindow());
        ASSERT_TRUE(eventually([&] { return panel->owns(screen().focusedWindow()); })) << round;
        screen().type("ab");
        typed += "ab";
        EXPECT_TRUE(eventually([&] { return field->text().toStdString() == typed; })) << round;
    }
    EXPECT_EQ(changes, 5);
    EXPECT_EQ(other.keyPresses(), 0);
    screen().press({XK_Escape});
    EXPECT_TRUE(eventually([&] { return cancels == 1; }));

    const auto root = screen().root();
    xcb_set_input_focus(screen().connection(), XCB_INPUT_FOCUS_POINTER_ROOT, root,
                        XCB_CURRENT_TIME);
    screen().sync();
    EXPECT_TRUE(eventually([&] { return !panel->isKeyWindow(); })) << "no window has the keyboard";

    panel->makeKeyAndOrderFront();
    panel->setContent(nullptr);
    panel->display();
    EXPECT_TRUE(eventually([&] { return screen().focusedWindow() == panel->windowNumber(); }));
    EXPECT_TRUE(panel->isKeyWindow());
    screen().press({XK_Escape});
    EXPECT_TRUE(eventually([&] { return cancels == 2; }));
    EXPECT_EQ(errors, 0);
}

/// All resources that the server holds for this program, by type, and the bytes of its pixmaps.
std::map<std::uint32_t, std::uint32_t> holdings(Screen& screen, std::uint32_t ours) {
    auto* const c = screen.connection();
    const auto resources =
        replyOf(c, xcb_res_query_client_resources, xcb_res_query_client_resources_reply, ours);
    const auto bytes = replyOf(c, xcb_res_query_client_pixmap_bytes,
                               xcb_res_query_client_pixmap_bytes_reply, ours);
    std::map<std::uint32_t, std::uint32_t> counts;
    if (!resources || !bytes) return counts;
    const auto* const types = xcb_res_query_client_resources_types(resources.get());
    for (int i = 0; i < xcb_res_query_client_resources_types_length(resources.get()); ++i)
        counts[types[i].resource_type] = types[i].count;
    counts[0] = bytes->bytes;
    return counts;
}

TEST_F(OverlayPanelTest, nothingIsLeftOnTheServerOfPanelsThatCameAndWent) {
    const auto behind = makeWindow({200, 150, 400, 300}, red);
    QtMainLoop loop;
    std::uint32_t ours = 0;
    const auto cycle = [&](int number) {
        // The server keeps pictures of a lock for the next one.
        auto panel = std::make_unique<Panel>(Rect{0, 0, 800, 600}, WindowLevel::lock - 1);
        ours = static_cast<std::uint32_t>(panel->windowNumber());
        BlurSurface surface(std::move(panel), BlurBackend::skyLight, {0, 0, 0, 0.4}, std::nullopt,
                            number % 2 * 20, loop);
        surface.panel().acceptsKeyboard = true;
        surface.setContent(content<QLineEdit>());
        surface.show(28, 0.05);
        surface.panel().makeKeyAndOrderFront();
        EXPECT_TRUE(eventually([&] { return !surface.isRamping(); }));
        recolour(behind, number % 2 ? red : green);
        QCoreApplication::processEvents();
        surface.setFrame({0, 0, 700.0 + number, 600});
        // Half of the panels are destroyed while they are visible.
        if (number % 2) return;
        bool isOut = false;
        surface.hide(0.05, [&isOut] { isOut = true; });
        EXPECT_TRUE(eventually([&] { return isOut; }));
    };
    const auto count = [&] {
        settled({0, 0, 1, 1});
        // What a panel frees at its end is not flushed at once.
        auto* const own = X11::shared().connection();
        replyOf(own, xcb_get_input_focus, xcb_get_input_focus_reply);
        return holdings(screen(), ours);
    };
    for (int i = 0; i < 4; ++i) cycle(i);
    const auto before = count();
    ASSERT_FALSE(before.empty());
    for (int i = 0; i < 20; ++i) cycle(i);
    EXPECT_EQ(count(), before);
    EXPECT_EQ(errors, 0);
}

}  // namespace
