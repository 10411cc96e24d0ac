#include "Screen.h"

#include <sys/uio.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>

namespace DesktopTest {

namespace {

/// Rows of at most this many pixels stay below the server's request size limit.
constexpr int pixelsPerRequest = 50'000;
constexpr double millimetresPerPixel = 0.2646;

}  // namespace

Screen::Screen(const std::string& display) {
    int number = 0;
    connection_ = xcb_connect(display.c_str(), &number);
    if (xcb_connection_has_error(connection_)) {
        xcb_disconnect(connection_);
        throw std::runtime_error("cannot connect to display " + display);
    }
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    root_ = screen_->root;
    symbols_ = xcb_key_symbols_alloc(connection_);
    checked(replyOf(connection_, xcb_randr_query_version, xcb_randr_query_version_reply, 1, 5),
            "RandR");
    input_ = xtestInput(connection_, root_);
}

Screen::~Screen() {
    xcb_key_symbols_free(symbols_);
    xcb_disconnect(connection_);
}

Area Screen::bounds() const {
    const auto geometry =
        checked(replyOf(connection_, xcb_get_geometry, xcb_get_geometry_reply, root_), "geometry");
    return {0, 0, geometry->width, geometry->height};
}

void Screen::sync() {
    checked(replyOf(connection_, xcb_get_input_focus, xcb_get_input_focus_reply), "sync");
}

// Keys and pointer

xcb_keycode_t Screen::keycode(xcb_keysym_t key) {
    const std::unique_ptr<xcb_keycode_t, FreeDeleter> codes(
        xcb_key_symbols_get_keycode(symbols_, key));
    if (!codes || codes.get()[0] == XCB_NO_SYMBOL)
        throw std::runtime_error("no key for keysym " + std::to_string(key));
    return codes.get()[0];
}

void Screen::keyDown(xcb_keysym_t key) {
    input_->key(keycode(key), true);
}

void Screen::keyUp(xcb_keysym_t key) {
    input_->key(keycode(key), false);
}

void Screen::press(const std::vector<xcb_keysym_t>& chord) {
    for (const auto key : chord) keyDown(key);
    for (auto key = chord.rbegin(); key != chord.rend(); ++key) keyUp(*key);
}

void Screen::type(std::string_view text) {
    for (const char character : text) {
        const auto key = static_cast<xcb_keysym_t>(static_cast<unsigned char>(character));
        if (xcb_key_symbols_get_keysym(symbols_, keycode(key), 0) == key)
            press({key});
        else
            press({XK_Shift_L, key});
    }
}

void Screen::movePointer(int x, int y) {
    input_->move(x, y);
}

void Screen::click(int button) {
    buttonDown(button);
    buttonUp(button);
}

void Screen::click() {
    click(XCB_BUTTON_INDEX_1);
}

void Screen::scrollDown(int steps) {
    for (int i = 0; i < steps; ++i) click(XCB_BUTTON_INDEX_5);
}

void Screen::click(int x, int y) {
    movePointer(x, y);
    click();
}

std::string Screen::held() {
    const auto keys =
        checked(replyOf(connection_, xcb_query_keymap, xcb_query_keymap_reply), "keymap");
    const auto pointer =
        checked(replyOf(connection_, xcb_query_pointer, xcb_query_pointer_reply, root_), "pointer");
    std::string result;
    for (unsigned code = 0; code < 256; ++code)
        if (keys->keys[code / 8] >> code % 8 & 1) result += "key " + std::to_string(code) + " ";
    if (pointer->mask != 0) result += "state " + std::to_string(pointer->mask);
    return result;
}

// Pixels

Image Screen::picture() {
    return picture(bounds());
}

Image Screen::picture(Area area) {
    const auto reply =
        checked(replyOf(connection_, xcb_get_image, xcb_get_image_reply, XCB_IMAGE_FORMAT_Z_PIXMAP,
                        root_, area.x, area.y, area.width, area.height, ~0U),
                "screenshot");
    Image result(area.width, area.height);
    if (static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) !=
        result.pixels.size() * sizeof(Colour))
        throw std::runtime_error("the screen does not have 32 bits per pixel");
    std::memcpy(result.pixels.data(), xcb_get_image_data(reply.get()),
                result.pixels.size() * sizeof(Colour));
    for (auto& pixel : result.pixels) pixel &= 0xffffff;
    return result;
}

void Screen::paintBackground(const Image& image) {
    const auto pixmap = paint(root_, image);
    // Publish the pixmap as all programs do that set a background, so that others can use it. It
    // must therefore exist as long as this connection.
    for (const char* name : {"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"})
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, root_, atom(name), XCB_ATOM_PIXMAP,
                            32, 1, &pixmap);
    sync();
}

xcb_pixmap_t Screen::paint(xcb_window_t window, const Image& image) {
    const auto pixmap = xcb_generate_id(connection_);
    xcb_create_pixmap(connection_, screen_->root_depth, pixmap, root_,
                      static_cast<std::uint16_t>(image.width),
                      static_cast<std::uint16_t>(image.height));
    const auto context = xcb_generate_id(connection_);
    xcb_create_gc(connection_, context, pixmap, 0, nullptr);
    const int rows = std::max(1, pixelsPerRequest / image.width);
    for (int y = 0; y < image.height; y += rows) {
        const int count = std::min(rows, image.height - y);
        xcb_put_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context,
                      static_cast<std::uint16_t>(image.width), static_cast<std::uint16_t>(count), 0,
                      static_cast<std::int16_t>(y), 0, screen_->root_depth,
                      static_cast<std::uint32_t>(image.width * count) * sizeof(Colour),
                      reinterpret_cast<const std::uint8_t*>(
                          &image.pixels[static_cast<std::size_t>(y * image.width)]));
    }
    xcb_free_gc(connection_, context);
    xcb_change_window_attributes(connection_, window, XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(connection_, 0, window, 0, 0, 0, 0);
    sync();
    return pixmap;
}

// Displays

namespace {

/// Sends RRSetMonitor, because libxcb's own function sends a wrong length, which breaks the
/// connection.
void setMonitor(xcb_connection_t* connection, xcb_window_t root, xcb_atom_t name, Area area,
                xcb_randr_output_t output) {
    struct Request {
        xcb_randr_set_monitor_request_t header{};
        xcb_randr_monitor_info_t info{};
        xcb_randr_output_t output;
    } request;
    request.header.window = root;
    request.info.name = name;
    request.info.nOutput = output != XCB_NONE;
    request.info.x = static_cast<std::int16_t>(area.x);
    request.info.y = static_cast<std::int16_t>(area.y);
    request.info.width = static_cast<std::uint16_t>(area.width);
    request.info.height = static_cast<std::uint16_t>(area.height);
    request.info.width_in_millimeters =
        static_cast<std::uint32_t>(area.width * millimetresPerPixel);
    request.info.height_in_millimeters =
        static_cast<std::uint32_t>(area.height * millimetresPerPixel);
    request.output = output;

    // xcb itself uses the two entries before the data.
    iovec parts[3] = {};
    parts[2] = {&request, sizeof(Request) - (output == XCB_NONE ? sizeof output : 0)};
    const xcb_protocol_request_t description{1, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
    xcb_send_request(connection, 0, &parts[2], &description);
}

}  // namespace

void Screen::setDisplays(const std::vector<Monitor>& displays) {
    const auto before = this->displays();
    const auto resources = checked(replyOf(connection_, xcb_randr_get_screen_resources_current,
                                           xcb_randr_get_screen_resources_current_reply, root_),
                                   "screen resources");
    const xcb_randr_output_t output =
        *xcb_randr_get_screen_resources_current_outputs(resources.get());

    xcb_grab_server(connection_);
    // The server refuses to change a monitor, so delete and recreate all of them. It also refuses
    // to delete its own monitor of the output, which does no harm.
    for (const auto& old : before)
        xcb_discard_reply(
            connection_,
            xcb_randr_delete_monitor_checked(connection_, root_, atom(old.name)).sequence);
    // If no monitor had the output, the server would add its own monitor for it.
    for (const auto& display : displays)
        setMonitor(connection_, root_, atom(display.name), display.area,
                   &display == &displays.front() ? output : XCB_NONE);
    xcb_ungrab_server(connection_);
    sync();
}

std::vector<Monitor> Screen::displays() {
    const auto reply = checked(
        replyOf(connection_, xcb_randr_get_monitors, xcb_randr_get_monitors_reply, root_, 1),
        "monitors");
    std::vector<Monitor> result;
    for (auto i = xcb_randr_get_monitors_monitors_iterator(reply.get()); i.rem;
         xcb_randr_monitor_info_next(&i)) {
        const auto name =
            checked(replyOf(connection_, xcb_get_atom_name, xcb_get_atom_name_reply, i.data->name),
                    "atom name");
        result.push_back({{xcb_get_atom_name_name(name.get()),
                           static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get()))},
                          {i.data->x, i.data->y, i.data->width, i.data->height}});
    }
    return result;
}

void Screen::resize(int width, int height) {
    xcb_randr_set_screen_size(connection_, root_, static_cast<std::uint16_t>(width),
                              static_cast<std::uint16_t>(height),
                              static_cast<std::uint32_t>(width * millimetresPerPixel),
                              static_cast<std::uint32_t>(height * millimetresPerPixel));
    sync();
}

}  // namespace DesktopTest
