#pragma once

#include "OrvelBlur/X11/X11OverlayPanel.h"
#include "OrvelCore/WeakList.h"

#include "Live.h"

/// A window of another program on the display under test.
struct Window {
    xcb_window_t id = 0;
    Area area;
};

/// Panels in this process, inspected by a second X client.
class BlurDesktopTest : public LiveTest {
  protected:
    using Panel = X11OverlayPanel;

    static constexpr Area whole{0, 0, 800, 600};
    static constexpr Colour red = 0xff0000;
    static constexpr Colour green = 0x00ff00;
    static constexpr Colour blue = 0x0000ff;

    BlurDesktopTest();
    ~BlurDesktopTest() override;

    /// A panel with a blurred backdrop and no tint; `plain` gives one in a single colour.
    static std::unique_ptr<Panel> blurring(Area area, int level = WindowLevel::toast);
    static std::unique_ptr<Panel> plain(Area area, Colour colour, int level = WindowLevel::toast);
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
    /// Runs requests of the other program so that all clients see them as a single change.
    void atomically(const std::function<void()>& requests);

    /// Waits until the picture no longer changes, and returns it.
    Image settled(Area area = whole);
    bool eventuallyShows(int x, int y, Colour colour, int tolerance = 2);
    bool shows(int x, int y, Colour colour, int tolerance = 2);

    /// The number of X errors that this program has received.
    int errors = 0;

  private:
    std::vector<xcb_window_t> windows_;
    Subscription errorWatch_;
};

/// An image of square blocks in random colours, with an edge of `block` pixels. It is always the
/// same.
Image blocks(int width, int height, int block);
/// The standard deviation of the brightness.
double contrast(const Image& image);
