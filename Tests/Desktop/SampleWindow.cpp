#include "SampleWindow.h"

#include <X11/keysym.h>

#include "Screen.h"

namespace DesktopTest {

SampleWindow::SampleWindow(const std::string& display, Area area, Colour colour, Kind kind,
                           const std::string& title)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_))
        throw std::runtime_error("cannot connect to display " + display);
    symbols_ = xcb_key_symbols_alloc(connection_);
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    window_ = xcb_generate_id(connection_);
    std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                           XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_EXPOSURE;
    if (kind == Kind::locker) events |= XCB_EVENT_MASK_VISIBILITY_CHANGE;
    const std::uint32_t values[] = {colour, kind != Kind::normal, events};
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, screen->root,
                      static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                      static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    const auto setText = [&](xcb_atom_t name, const std::string& text) {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, name, XCB_ATOM_STRING, 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
    };
    setText(XCB_ATOM_WM_NAME, title);
    setText(XCB_ATOM_WM_CLASS, title + '\0' + title + '\0');
    // Marks the position as chosen by the user, so that a window manager keeps it.
    constexpr std::uint32_t userPosition = 1, userSize = 2;
    const std::uint32_t hints[18] = {userPosition | userSize};
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, 18, hints);
    const auto pidAtom =
        replyOf(connection_, xcb_intern_atom, xcb_intern_atom_reply, 0, 11, "_NET_WM_PID");
    if (pidAtom) {
        const std::uint32_t pid = static_cast<std::uint32_t>(getpid());
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, pidAtom->atom,
                            XCB_ATOM_CARDINAL, 32, 1, &pid);
    }
    map();
}

SampleWindow::~SampleWindow() {
    xcb_key_symbols_free(symbols_);
    xcb_disconnect(connection_);
}

void SampleWindow::map() {
    xcb_map_window(connection_, window_);
    readEvents();
}

void SampleWindow::unmap() {
    xcb_unmap_window(connection_, window_);
    readEvents();
}

void SampleWindow::raise() {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_, window_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    readEvents();
}

bool SampleWindow::grab(bool freezes) {
    const auto mode = static_cast<std::uint8_t>(freezes ? XCB_GRAB_MODE_SYNC : XCB_GRAB_MODE_ASYNC);
    const auto keyboard = replyOf(connection_, xcb_grab_keyboard, xcb_grab_keyboard_reply, 0,
                                  window_, XCB_CURRENT_TIME, mode, mode);
    const auto pointer =
        replyOf(connection_, xcb_grab_pointer, xcb_grab_pointer_reply, 0, window_,
                XCB_EVENT_MASK_BUTTON_PRESS, mode, mode, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
    return keyboard && keyboard->status == XCB_GRAB_STATUS_SUCCESS && pointer &&
           pointer->status == XCB_GRAB_STATUS_SUCCESS;
}

void SampleWindow::ungrab() {
    xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
    xcb_ungrab_pointer(connection_, XCB_CURRENT_TIME);
    readEvents();
}

void SampleWindow::takeFocus() {
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
    readEvents();
}

int SampleWindow::keyPresses() {
    readEvents();
    return keyPresses_;
}

int SampleWindow::clicks() {
    readEvents();
    return clicks_;
}

bool SampleWindow::hasFocus() {
    const auto focus = replyOf(connection_, xcb_get_input_focus, xcb_get_input_focus_reply);
    return focus && focus->focus == window_;
}

void SampleWindow::readEvents() {
    // A round trip first, so that all pending events of this window have arrived.
    hasFocus();
    while (const auto event = XReply<xcb_generic_event_t>(xcb_poll_for_event(connection_))) {
        const auto type = event->response_type & 0x7f;
        if (type == XCB_KEY_PRESS) {
            const auto code = reinterpret_cast<const xcb_key_press_event_t&>(*event).detail;
            const auto symbol = xcb_key_symbols_get_keysym(symbols_, code, 0);
            keyPresses_ += symbol != XCB_NO_SYMBOL && symbol != XK_Escape;
        }
        clicks_ += type == XCB_BUTTON_PRESS;
        const auto& seen = reinterpret_cast<const xcb_visibility_notify_event_t&>(*event);
        if (type == XCB_VISIBILITY_NOTIFY && seen.state != XCB_VISIBILITY_UNOBSCURED) {
            const std::uint32_t above = XCB_STACK_MODE_ABOVE;
            xcb_configure_window(connection_, window_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
            xcb_flush(connection_);
        }
    }
}

}  // namespace DesktopTest
