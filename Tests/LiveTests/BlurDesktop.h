#pragma once

#include "OrvelBlur/X11/X11OverlayPanel.h"

#include "Live.h"

/// What the display of the tests shows beside the panels under test.
struct Window {
    xcb_window_t id = 0;
    DesktopTest::Area area;
};

/// Panels in this process looked at by a second client.
class BlurDesktopTest : public LiveTest {
  protected:
    using Area = DesktopTest::Area;
    using Colour = DesktopTest::Colour;
    using Image = DesktopTest::Image;
    using Panel = OrvelBlur::X11OverlayPanel;

    static constexpr Area whole{0, 0, 800, 600};
    static constexpr Colour red = 0xff0000;
    static constexpr Colour green = 0x00ff00;
    static constexpr Colour blue = 0x0000ff;

    BlurDesktopTest();
    ~BlurDesktopTest() override;

    /// A blurring panel without a tint, or one of a single colour.
    static std::unique_ptr<Panel> blurring(Area area, int level = OrvelBlur::WindowLevel::toast);
    static std::unique_ptr<Panel> plain(Area area, Colour colour,
                                        int level = OrvelBlur::WindowLevel::toast);
    static void show(Panel& panel, int radius = 28);

    /// An override-redirect window of another program, mapped on top.
    Window makeWindow(Area area, Colour colour);
    void recolour(const Window& window, Colour colour);
    void configure(const Window& window, std::uint16_t mask,
                   const std::vector<std::uint32_t>& values);
    void raise(const Window& window);
    void map(const Window& window);
    void unmap(const Window& window);
    void destroy(const Window& window);
    /// The other program's requests in here are one step for everybody else.
    void atomically(const std::function<void()>& requests);

    /// The picture once it has stopped changing.
    Image settled(Area area = whole);
    bool eventuallyShows(int x, int y, Colour colour, int tolerance = 2);
    bool shows(int x, int y, Colour colour, int tolerance = 2);

    /// Errors that the server has sent to this program.
    int errors = 0;

  private:
    std::vector<xcb_window_t> windows_;
    OrvelSystem::X11::Subscription errorWatch_;
};

/// Blocks of this many pixels in random colours, always the same ones.
DesktopTest::Image blocks(int width, int height, int block);
/// The deviation of the brightness from its mean.
double contrast(const DesktopTest::Image& image);
