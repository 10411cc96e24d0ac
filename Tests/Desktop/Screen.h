#pragma once

#include <X11/keysym.h>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include "OrvelSystem/X11/XReply.h"

#include "Image.h"
#include "Input.h"

namespace DesktopTest {

/// A display: the name of its RandR monitor, and its area of the screen in pixels.
struct Monitor {
    std::string name;
    Area area;
    bool operator==(const Monitor&) const = default;
};

using OrvelSystem::FreeDeleter;
using OrvelSystem::XReply;

/// Sends a request and waits for its reply; null if it failed. `request` and `answer` are the two
/// functions of xcb for it: `replyOf(connection, xcb_get_geometry, xcb_get_geometry_reply,
/// window)`.
template <class Cookie, class Reply, class... Parameters, class... Arguments>
XReply<Reply> replyOf(xcb_connection_t* connection,
                      Cookie (*request)(xcb_connection_t*, Parameters...),
                      Reply* (*answer)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                      Arguments... arguments) {
    const Cookie cookie = request(connection, static_cast<Parameters>(arguments)...);
    return XReply<Reply>(answer(connection, cookie, nullptr));
}

/// Throws if there is no reply.
template <class T>
XReply<T> checked(XReply<T> reply, const char* what) {
    if (!reply) throw std::runtime_error(std::string(what) + " failed");
    return reply;
}

/// What a test sees and does on an X server: keys and pointer, the pixels of the screen, displays,
/// and anything that a second client can query. A failed request throws. Coordinates are pixels of
/// the screen.
class Screen {
  public:
    /// `display` is a name such as ":1".
    explicit Screen(const std::string& display);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    xcb_connection_t* connection() const { return connection_; }
    xcb_window_t root() const { return root_; }
    Area bounds() const;

    /// The source of keys and clicks; XTEST devices unless `use` replaces them.
    Input& input() { return *input_; }
    void use(std::unique_ptr<Input> input) { input_ = std::move(input); }
    /// Presses these keys in order and releases them in reverse: `press({XK_Super_L, XK_l})`.
    void press(const std::vector<xcb_keysym_t>& chord);
    void keyDown(xcb_keysym_t key);
    void keyUp(xcb_keysym_t key);
    /// Types characters of the keyboard's first two shift levels.
    void type(std::string_view text);
    void movePointer(int x, int y);
    /// Clicks button 1 at the pointer's position.
    void click();
    void click(int x, int y);
    void buttonDown(int number) { input_->button(number, true); }
    void buttonUp(int number) { input_->button(number, false); }
    /// Turns the wheel towards the user.
    void scrollDown(int steps);
    /// The keys, modifiers and buttons that the server reports as down, as words; empty if there
    /// are none.
    std::string held();

    Image picture();
    Image picture(Area area);
    /// Sets the root window's background, which repeats from the upper left corner.
    void paintBackground(const Image& image);

    /// Sets a window's background; the pixmap exists as long as this connection.
    xcb_pixmap_t paint(xcb_window_t window, const Image& image);

    /// Replaces the RandR monitors by these. Other clients see a single change. The first monitor
    /// gets the server's only output.
    void setDisplays(const std::vector<Monitor>& displays);
    std::vector<Monitor> displays();
    /// Sets the size of the whole screen, at most the size that the server started with.
    void resize(int width, int height);

    xcb_window_t focusedWindow();
    /// Whether any client, including this one, has grabbed the keyboard. If it is free, this takes
    /// the grab for a moment.
    bool keyboardIsGrabbed();
    bool pointerIsGrabbed();
    /// Whether a client has grabbed this combination on the root window, such as a shortcut.
    bool comboIsGrabbed(std::uint16_t modifiers, xcb_keysym_t key);

    /// The mapped children of the root window, from bottom to top.
    std::vector<xcb_window_t> mappedWindows();
    Area areaOf(xcb_window_t window);
    /// The child of the root that contains the window: its frame, or the window itself.
    xcb_window_t frameOf(xcb_window_t window);
    /// The client window with this `WM_CLASS` instance or title, at any depth; empty if there is
    /// none.
    std::optional<xcb_window_t> find(std::string_view nameOrClass);
    /// All client windows on the screen, by title.
    std::map<std::string, xcb_window_t> titles();
    xcb_atom_t atom(std::string_view name);
    /// The owner of this selection; `XCB_NONE` if there is none.
    xcb_window_t ownerOf(std::string_view selection);
    bool hasOwner(std::string_view selection) { return ownerOf(selection) != XCB_NONE; }
    /// The first value of a property; empty if the window does not have it.
    std::optional<std::uint32_t> cardinal(xcb_window_t window, std::string_view name);
    std::string textProperty(xcb_window_t window, std::string_view name);
    /// The active window according to the window manager; 0 if there is none.
    xcb_window_t activeWindow();
    /// Sends the window manager a client message about a window, with these values.
    void ask(xcb_window_t window, std::string_view request, std::uint32_t first,
             std::uint32_t second = 0);
    void activate(xcb_window_t window);

    /// Waits until the server has carried out all earlier requests.
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
