#pragma once

#include <X11/keysym.h>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include "Image.h"
#include "Input.h"

namespace DesktopTest {

/// One display: a RandR monitor of this name, and where it shows the screen.
struct Display {
    std::string name;
    Area area;
    bool operator==(const Display&) const = default;
};

/// xcb replies are malloced.
struct FreeDeleter {
    void operator()(void* memory) const;
};
template <class T>
using XReply = std::unique_ptr<T, FreeDeleter>;
/// A reply that has to come.
template <class T>
XReply<T> checked(T* reply, const char* what) {
    if (!reply) throw std::runtime_error(std::string(what) + " failed");
    return XReply<T>(reply);
}

/// The hands and eyes of a test on an X server: keys and pointer, the pixels of the screen,
/// displays, and what a second client can find out. Failing requests throw.
class Screen {
  public:
    /// `display` as in ":1".
    explicit Screen(const std::string& display);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    xcb_connection_t* connection() const { return connection_; }
    xcb_window_t root() const { return root_; }
    Area bounds() const;

    /// Where keys and clicks come from: from XTEST devices unless told.
    Input& input() { return *input_; }
    void use(std::unique_ptr<Input> input) { input_ = std::move(input); }
    /// Presses and releases these keys, in order and then in reverse: `press({XK_Super_L, XK_l})`.
    void press(const std::vector<xcb_keysym_t>& chord);
    void keyDown(xcb_keysym_t key);
    void keyUp(xcb_keysym_t key);
    /// Types characters that the keyboard has on its first two levels.
    void type(std::string_view text);
    void movePointer(int x, int y);
    /// Button 1 where the pointer is.
    void click();
    void click(int x, int y);
    void buttonDown(int number) { input_->button(number, true); }
    void buttonUp(int number) { input_->button(number, false); }
    /// Turns the wheel towards the user.
    void scrollDown(int steps);
    /// The keys, modifiers and buttons that programs are told to be down, as words; empty for none.
    std::string held();

    Image picture();
    Image picture(Area area);
    /// The background of the root window, in its upper left corner and repeated from there.
    void paintBackground(const Image& image);

    /// The background of any window; the pixmap lives as long as this connection.
    xcb_pixmap_t paint(xcb_window_t window, const Image& image);

    /// Makes the RandR monitors be exactly these, in one step as seen by other clients. The first
    /// one takes the server's only output.
    void setDisplays(const std::vector<Display>& displays);
    std::vector<Display> displays();
    /// The size of the whole screen, at most as large as the server began with.
    void resize(int width, int height);

    xcb_window_t focusedWindow();
    /// Whether some client, this one included, holds the keyboard. Takes the grab for a moment when
    /// nobody does.
    bool keyboardIsGrabbed();
    bool pointerIsGrabbed();

    /// The root's children from bottom to top, mapped ones only.
    std::vector<xcb_window_t> mappedWindows();
    Area areaOf(xcb_window_t window);
    /// The root's child that the window is in: its frame, or itself.
    xcb_window_t frameOf(xcb_window_t window);
    /// The client window of this `WM_CLASS` instance or title, at any depth; nothing if none.
    std::optional<xcb_window_t> find(std::string_view nameOrClass);
    /// All client windows on the screen by their titles.
    std::map<std::string, xcb_window_t> titles();
    xcb_atom_t atom(std::string_view name);
    /// The window that owns this selection; none where there is no owner.
    xcb_window_t ownerOf(std::string_view selection);
    bool hasOwner(std::string_view selection) { return ownerOf(selection) != XCB_NONE; }
    /// The first number of a property; nothing where there is none.
    std::optional<std::uint32_t> cardinal(xcb_window_t window, std::string_view name);
    std::string textProperty(xcb_window_t window, std::string_view name);
    /// The window manager's active window; 0 if none.
    xcb_window_t activeWindow();
    /// Sends the window manager a request about a window: a client message with these numbers.
    void ask(xcb_window_t window, std::string_view request, std::uint32_t first,
             std::uint32_t second = 0);
    void activate(xcb_window_t window);

    /// Everything sent so far has been carried out by the server.
    void sync();

  private:
    void click(int button);
    xcb_keycode_t keycode(xcb_keysym_t key);

    xcb_connection_t* connection_;
    xcb_window_t root_ = 0;
    xcb_screen_t* screen_ = nullptr;
    xcb_key_symbols_t* symbols_ = nullptr;
    std::unique_ptr<Input> input_;
};

}  // namespace DesktopTest
