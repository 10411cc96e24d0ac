#include "OrvelBlur/X11/PanelWindow.h"

#include <cmath>
#include <string_view>
#include <vector>

#include <xcb/composite.h>
#include <xcb/xcb_cursor.h>

#include "OrvelSystem/X11/WindowServerMirror.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

using OrvelSystem::X11;

namespace {

xcb_connection_t* connection() {
    return X11::shared().connection();
}

xcb_cursor_t arrowCursor() {
    static const xcb_cursor_t cursor = [] {
        xcb_cursor_context_t* context = nullptr;
        if (xcb_cursor_context_new(connection(), X11::shared().screen(), &context) < 0)
            return static_cast<xcb_cursor_t>(XCB_NONE);
        const xcb_cursor_t arrow = xcb_cursor_load_cursor(context, "left_ptr");
        xcb_cursor_context_free(context);
        return arrow;
    }();
    return cursor;
}

}  // namespace

PanelWindow::PanelWindow(const PixelRect& frame, int level) : level_(level), frame_(frame) {
    make();
}

PanelWindow::~PanelWindow() {
    picture_.reset();
    X11::shared().forget(id_);
    xcb_destroy_window(connection(), id_);
    X11::shared().flush();
}

void PanelWindow::replace() {
    picture_.reset();
    X11::shared().forget(id_);
    make();
}

void PanelWindow::make() {
    auto& x11 = X11::shared();
    id_ = xcb_generate_id(connection());
    placedFrame_ = frame_;
    // Without a background the server shows no colour before the first frame is drawn. While a
    // window of static gravity is resized, it shows what it showed before in the same place.
    // Without it, a compositing manager would show the wallpaper there until the next frame.
    std::uint32_t mask = XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_BIT_GRAVITY |
                         XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP;
    std::vector<std::uint32_t> values{XCB_BACK_PIXMAP_NONE,
                                      0,
                                      XCB_GRAVITY_STATIC,
                                      1,
                                      XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_BUTTON_PRESS |
                                          XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_FOCUS_CHANGE |
                                          OrvelSystem::windowRepairEvents,
                                      x11.screen()->default_colormap};
    if (const xcb_cursor_t cursor = arrowCursor(); cursor != XCB_NONE) {
        mask |= XCB_CW_CURSOR;
        values.push_back(cursor);
    }
    xcb_create_window(connection(), XCB_COPY_FROM_PARENT, id_, x11.root(),
                      static_cast<std::int16_t>(frame_.x), static_cast<std::int16_t>(frame_.y),
                      static_cast<std::uint16_t>(frame_.width),
                      static_cast<std::uint16_t>(frame_.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      x11.screen()->root_visual, mask, values.data());
    setProperties();
    const auto& server = RenderServer::shared();
    // The panel composites the picture of its content, which a child window draws, by itself.
    if (server.canBlur())
        xcb_composite_redirect_subwindows(connection(), id_, XCB_COMPOSITE_REDIRECT_MANUAL);
    if (const auto format = server.rootFormat()) picture_ = server.makePicture(id_, format, false);
    x11.keepFromQt(id_);
    OrvelSystem::watchShape(connection(), id_);
}

void PanelWindow::setProperties() {
    static constexpr char wmClass[] = "karvo\0Karvo";
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, id_, XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, sizeof wmClass, wmClass);
    static constexpr char name[] = "Karvo";
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, id_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                        8, sizeof name - 1, name);
    const auto setNumber = [&](std::string_view property, std::uint32_t value) {
        xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, id_, X11::shared().atom(property),
                            XCB_ATOM_CARDINAL, 32, 1, &value);
    };
    // Otherwise compositing managers draw shadows around override-redirect windows.
    setNumber("_COMPTON_SHADOW", 0);
    // A panel that fills a display must not bypass the compositing manager, which would hide the
    // windows above it.
    setNumber("_NET_WM_BYPASS_COMPOSITOR", 2);
    setNumber(OrvelSystem::WindowServerMirror::levelProperty, static_cast<std::uint32_t>(level_));
}

void PanelWindow::place() {
    placedFrame_ = frame_;
    const std::uint32_t values[4] = {
        static_cast<std::uint32_t>(frame_.x), static_cast<std::uint32_t>(frame_.y),
        static_cast<std::uint32_t>(frame_.width), static_cast<std::uint32_t>(frame_.height)};
    xcb_configure_window(connection(), id_,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values);
}

void PanelWindow::map() {
    isMapped_ = true;
    xcb_map_window(connection(), id_);
}

void PanelWindow::unmap() {
    isMapped_ = false;
    xcb_unmap_window(connection(), id_);
}

void PanelWindow::fill(const OrvelCore::Color& color) {
    const auto byte = [](double value) {
        return static_cast<std::uint32_t>(std::lround(value * 255));
    };
    const std::uint32_t pixel = byte(color.red) << 16U | byte(color.green) << 8U | byte(color.blue);
    xcb_change_window_attributes(connection(), id_, XCB_CW_BACK_PIXEL, &pixel);
    xcb_clear_area(connection(), 0, id_, 0, 0, 0, 0);
}

OrvelSystem::WindowChange PanelWindow::repair(const xcb_generic_event_t& event,
                                              bool hasShape) const {
    const OrvelSystem::WindowState wanted{.isMapped = isMapped_,
                                          .x = static_cast<std::int16_t>(placedFrame_.x),
                                          .y = static_cast<std::int16_t>(placedFrame_.y),
                                          .width = static_cast<std::uint16_t>(placedFrame_.width),
                                          .height = static_cast<std::uint16_t>(placedFrame_.height),
                                          .isUnshaped = !hasShape};
    return OrvelSystem::repairWindow(connection(), *X11::shared().screen(), id_, wanted, event);
}

}  // namespace OrvelBlur
