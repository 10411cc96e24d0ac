#include "BlurDesktop.h"

#include <QCoreApplication>

namespace {

Rect rect(Area area) {
    return {static_cast<double>(area.x), static_cast<double>(area.y),
            static_cast<double>(area.width), static_cast<double>(area.height)};
}

}  // namespace

BlurDesktopTest::BlurDesktopTest()
    : errorWatch_(X11::shared().onEvent(
          [this](const xcb_generic_event_t& event) { errors += event.response_type == 0; })) {
    screen().paintBackground(blocks(whole.width, whole.height, 8));
    screen().movePointer(799, 599);
}

BlurDesktopTest::~BlurDesktopTest() {
    for (const xcb_window_t window : windows_) xcb_destroy_window(screen().connection(), window);
    screen().sync();
    QCoreApplication::processEvents();
}

std::unique_ptr<X11OverlayPanel> BlurDesktopTest::blurring(Area area, int level) {
    auto panel = std::make_unique<Panel>(rect(area), level);
    panel->setBackdrop(OverlayPanel::ServerBlur{});
    panel->setTint({0, 0, 0, 0});
    return panel;
}

std::unique_ptr<X11OverlayPanel> BlurDesktopTest::plain(Area area, Colour colour, int level) {
    auto panel = std::make_unique<Panel>(rect(area), level);
    const auto channel = [colour](int shift) { return ((colour >> shift) & 0xFF) / 255.0; };
    panel->setBackdrop(OverlayPanel::Fill{{channel(16), channel(8), channel(0), 1}});
    panel->setTint({0, 0, 0, 0});
    return panel;
}

void BlurDesktopTest::show(Panel& panel, int radius) {
    panel.setRadius(radius);
    panel.setOpacity(OverlayPanel::Layer::tint, 1);
    panel.setOpacity(OverlayPanel::Layer::content, 1);
    panel.orderFrontRegardless();
    panel.display();
}

Window BlurDesktopTest::makeWindow(Area area, Colour colour) {
    const auto window =
        createWindow(area, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, {colour, 1});
    windows_.push_back(window);
    map({window, area});
    return {window, area};
}

void BlurDesktopTest::recolour(const Window& window, Colour colour) {
    auto* const c = screen().connection();
    xcb_change_window_attributes(c, window.id, XCB_CW_BACK_PIXEL, &colour);
    xcb_clear_area(c, 0, window.id, 0, 0, 0, 0);
    screen().sync();
}

void BlurDesktopTest::configure(const Window& window, std::uint16_t mask,
                                const std::vector<std::uint32_t>& values) {
    xcb_configure_window(screen().connection(), window.id, mask, values.data());
    screen().sync();
}

void BlurDesktopTest::raise(const Window& window) {
    configure(window, XCB_CONFIG_WINDOW_STACK_MODE, {XCB_STACK_MODE_ABOVE});
}

void BlurDesktopTest::map(const Window& window) {
    xcb_map_window(screen().connection(), window.id);
    screen().sync();
}

void BlurDesktopTest::unmap(const Window& window) {
    xcb_unmap_window(screen().connection(), window.id);
    screen().sync();
}

void BlurDesktopTest::destroy(const Window& window) {
    std::erase(windows_, window.id);
    xcb_destroy_window(screen().connection(), window.id);
    screen().sync();
}

void BlurDesktopTest::atomically(const std::function<void()>& requests) {
    xcb_grab_server(screen().connection());
    requests();
    xcb_ungrab_server(screen().connection());
    screen().sync();
}

Image BlurDesktopTest::settled(Area area) {
    Image last;
    eventually([&] {
        auto picture = screen().picture(area);
        // `stays` waits longer than the interval between two updates of a live backdrop.
        if (picture.pixels == last.pixels &&
            stays([&] { return screen().picture(area).pixels == last.pixels; }))
            return true;
        last = std::move(picture);
        return false;
    });
    return last;
}

bool BlurDesktopTest::shows(int x, int y, Colour colour, int tolerance) {
    return screen().picture({x, y, 1, 1}).shareOf(colour, tolerance) == 1;
}

bool BlurDesktopTest::eventuallyShows(int x, int y, Colour colour, int tolerance) {
    return eventually([=, this] { return shows(x, y, colour, tolerance); });
}

Image blocks(int width, int height, int block) {
    Image image(width, height);
    std::mt19937 random(1);
    for (int y = 0; y < height; y += block) {
        for (int x = 0; x < width; x += block)
            image.fill({x, y, block, block}, static_cast<Colour>(random() & 0xffffff));
    }
    return image;
}

double contrast(const Image& image) {
    const double mean = image.meanBrightness();
    double sum = 0;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            const double off = image.brightness(x, y) - mean;
            sum += off * off;
        }
    }
    return std::sqrt(sum / static_cast<double>(image.pixels.size()));
}
