#include "OrvelApp/Guard/StandInWindow.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include <X11/keysym.h>
#include <poll.h>
#include <xcb/randr.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xinput.h>

#include "OrvelSystem/Linux/StandIn.h"
#include "OrvelSystem/Linux/XReply.h"

namespace OrvelApp {

using OrvelSystem::StandIn;
template <class T>
using Reply = OrvelSystem::XReply<T>;

namespace {

// The covers' tint, and the card's text.
constexpr std::uint32_t background = 0x0B0D12;
constexpr std::uint32_t foreground = 0xC8CCD4;
// Every modifier, in the words of the input extension.
constexpr std::uint32_t anyModifier = 1U << 31;
constexpr xcb_input_device_id_t allMasters = XCB_INPUT_DEVICE_ALL_MASTER;

xcb_keycode_t keycodeOf(xcb_connection_t* connection, xcb_keysym_t key) {
    auto* const symbols = xcb_key_symbols_alloc(connection);
    const Reply<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols, key));
    xcb_key_symbols_free(symbols);
    return codes ? codes.get()[0] : xcb_keycode_t(XCB_NO_SYMBOL);
}

}  // namespace

void StandInWindow::make() {
    const char* const named = std::getenv("DISPLAY");
    const std::string display = named ? named : "";
    if (connection_ && display == display_ && !xcb_connection_has_error(connection_.get())) return;
    isUp_ = appHasKeys_ = systemIsLocked_ = watchesInput_ = returnPressed_ = false;
    text_.clear();
    overlay_.reset();
    display_ = display;
    int number = 0;
    connection_.reset(display.empty() ? nullptr : xcb_connect(display.c_str(), &number));
    if (connection_ && xcb_connection_has_error(connection_.get())) connection_.reset();
    if (!connection_) return;
    auto* const c = connection_.get();
    overlay_.emplace(c, number);

    auto screens = xcb_setup_roots_iterator(xcb_get_setup(c));
    for (; number > 0 && screens.rem > 1; --number) xcb_screen_next(&screens);
    screen_ = screens.data;
    takesKeys_ = atom(StandIn::takesKeys);
    return_ = keycodeOf(c, XK_Return);
    const auto* const input = xcb_get_extension_data(c, &xcb_input_id);
    inputOpcode_ = input && input->present ? input->major_opcode : 0;
    if (inputOpcode_ != 0) {
        const Reply<xcb_input_xi_query_version_reply_t> version(
            xcb_input_xi_query_version_reply(c, xcb_input_xi_query_version(c, 2, 2), nullptr));
    }

    window_ = xcb_generate_id(c);
    const std::uint32_t values[] = {background, 1,
                                    XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                                        XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_EXPOSURE |
                                        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS,
                                    screen_->default_colormap};
    xcb_create_window(
        c, XCB_COPY_FROM_PARENT, window_, screen_->root, 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual,
        XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values);
    const auto font = xcb_generate_id(c);
    xcb_open_font(c, font, 5, "fixed");
    pen_ = xcb_generate_id(c);
    const std::uint32_t look[] = {foreground, background, font};
    xcb_create_gc(c, pen_, window_, XCB_GC_FOREGROUND | XCB_GC_BACKGROUND | XCB_GC_FONT, look);
    xcb_close_font(c, font);
    xcb_set_selection_owner(c, window_, atom(StandIn::selection), XCB_CURRENT_TIME);
    xcb_flush(c);
}

int StandInWindow::descriptor() const {
    return connection_ ? xcb_get_file_descriptor(connection_.get()) : -1;
}

xcb_atom_t StandInWindow::atom(const char* name) const {
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_.get(),
        xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

bool StandInWindow::handleEvents() {
    if (!connection_) return false;
    bool any = false;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        handle(*event);
        any = true;
    }
    if (any) settle();
    if (!xcb_connection_has_error(connection_.get())) return any;
    isUp_ = false;
    overlay_.reset();
    connection_.reset();
    return false;
}

void StandInWindow::awaitEvents() const {
    constexpr int patience = 20;  // ms
    pollfd entry{descriptor(), POLLIN, 0};
    if (entry.fd >= 0) poll(&entry, 1, patience);
}

void StandInWindow::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7F) {
        case XCB_MAP_NOTIFY:
            if (reinterpret_cast<const xcb_map_notify_event_t&>(event).window != window_) break;
            isUp_ = true;
            systemIsLocked_ = false;  // Until somebody says so of this time.
            clear();
            watchStack(true);
            break;
        case XCB_UNMAP_NOTIFY:
            if (reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window != window_) break;
            isUp_ = false;
            text_.clear();
            watchStack(false);
            break;
        case XCB_PROPERTY_NOTIFY: {
            const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if (property.atom != takesKeys_) break;
            // Before all questions: the app may be gone by the time of their answers.
            if (property.state == XCB_PROPERTY_NEW_VALUE) watchInput(true);
            xcb_flush(connection_.get());
            readKeys();
            break;
        }
        case XCB_EXPOSE:
            draw();
            break;
        case XCB_GE_GENERIC: {
            const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
            if (generic.extension != inputOpcode_ || generic.event_type != XCB_INPUT_KEY_PRESS)
                break;
            const auto& key = reinterpret_cast<const xcb_input_key_press_event_t&>(event);
            returnPressed_ |= isUp_ && key.detail == return_;
            break;
        }
        default:
            break;
    }
}

/// As they are now, not as the event has it: what is held for an app that has let go is in its way.
void StandInWindow::readKeys() {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_.get(),
        xcb_get_property(connection_.get(), 0, window_, takesKeys_, XCB_ATOM_CARDINAL, 0, 1),
        nullptr));
    auto keys = StandIn::Keys::free;
    if (reply && xcb_get_property_value_length(reply.get()) == sizeof keys)
        std::memcpy(&keys, xcb_get_property_value(reply.get()), sizeof keys);
    appHasKeys_ = keys != StandIn::Keys::free;
    if (keys == StandIn::Keys::takenUnderRoof) overlay_->hold(background);
}

void StandInWindow::settle() {
    bool isCovered = false;
    const bool locker = isUp_ && lockerIsAbove(isCovered);
    // A locker of a kind that is not known by its window at least says that it has locked.
    if (isUp_ ? locker || systemIsLocked_ : !appHasKeys_) overlay_->release();
    if (isUp_) freeKeys();
    watchInput(appHasKeys_ || (isUp_ && !(locker && systemIsLocked_)));
    if (isCovered && !locker) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection_.get(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
    xcb_flush(connection_.get());
}

void StandInWindow::setSystemIsLocked(bool locked) {
    if (!connection_ || locked == systemIsLocked_) return;
    systemIsLocked_ = locked;
    settle();
}

void StandInWindow::freeKeys() {
    if (!connection_) return;
    auto* const c = connection_.get();
    const Reply<xcb_get_input_focus_reply_t> held(
        xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
    if (!held || held->focus != XCB_INPUT_FOCUS_NONE) return;
    xcb_set_input_focus(c, XCB_INPUT_FOCUS_POINTER_ROOT, XCB_INPUT_FOCUS_POINTER_ROOT,
                        XCB_CURRENT_TIME);
    xcb_flush(c);
}

void StandInWindow::watchStack(bool watch) {
    const std::uint32_t mask = watch ? XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY : 0;
    xcb_change_window_attributes(connection_.get(), screen_->root, XCB_CW_EVENT_MASK, &mask);
}

void StandInWindow::watchInput(bool watch) {
    if (watch == watchesInput_ || inputOpcode_ == 0) return;
    watchesInput_ = watch;
    auto* const c = connection_.get();
    for (const auto& [type, events] :
         {std::pair(XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_XI_EVENT_MASK_KEY_PRESS),
          std::pair(XCB_INPUT_GRAB_TYPE_BUTTON, XCB_INPUT_XI_EVENT_MASK_BUTTON_PRESS)}) {
        const auto kind = static_cast<std::uint8_t>(type);
        const auto mask = static_cast<std::uint32_t>(events);
        if (!watch) {
            xcb_input_xi_passive_ungrab_device(c, screen_->root, XCB_GRAB_ANY, allMasters, 1, kind,
                                               &anyModifier);
            continue;
        }
        // Window managers have grabs of single keys in the older form, which this one does not
        // collide with. The answer is of no use.
        xcb_discard_reply(c, xcb_input_xi_passive_grab_device(
                                 c, XCB_CURRENT_TIME, screen_->root, XCB_CURSOR_NONE, XCB_GRAB_ANY,
                                 allMasters, 1, 1, kind, XCB_INPUT_GRAB_MODE_22_ASYNC,
                                 XCB_INPUT_GRAB_MODE_22_ASYNC, 0, &mask, &anyModifier)
                                 .sequence);
    }
}

/// Whether an unmanaged window over this one fills a display, as a locker's does, or the covers of
/// the app that is back. `isCovered` tells of any window over this one.
bool StandInWindow::lockerIsAbove(bool& isCovered) const {
    auto* const c = connection_.get();
    const auto monitorsCookie = xcb_randr_get_monitors(c, screen_->root, 1);
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(c, xcb_query_tree(c, screen_->root), nullptr));
    const Reply<xcb_randr_get_monitors_reply_t> monitors(
        xcb_randr_get_monitors_reply(c, monitorsCookie, nullptr));
    if (!tree || !monitors) return false;
    const auto fillsDisplay = [&](const xcb_get_geometry_reply_t& frame) {
        for (auto at = xcb_randr_get_monitors_monitors_iterator(monitors.get()); at.rem;
             xcb_randr_monitor_info_next(&at)) {
            const auto& display = *at.data;
            if (frame.x <= display.x && frame.y <= display.y &&
                frame.x + frame.width >= display.x + display.width &&
                frame.y + frame.height >= display.y + display.height)
                return true;
        }
        return false;
    };
    const auto* const first = xcb_query_tree_children(tree.get());
    for (auto at = first + xcb_query_tree_children_length(tree.get()); at-- != first;) {
        if (*at == window_) return false;
        const auto attributesCookie = xcb_get_window_attributes(c, *at);
        const auto geometryCookie = xcb_get_geometry(c, *at);
        const Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(c, attributesCookie, nullptr));
        const Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(c, geometryCookie, nullptr));
        if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        isCovered = true;
        if (attributes->override_redirect && fillsDisplay(*geometry)) return true;
    }
    return false;
}

bool StandInWindow::takeReturn() {
    return std::exchange(returnPressed_, false);
}

void StandInWindow::say(const std::string& text) {
    if (!connection_ || text == text_) return;
    text_ = text;
    clear();
    draw();
    xcb_flush(connection_.get());
}

void StandInWindow::clear() const {
    for (const auto window : {window_, overlay_->window()})
        if (window != XCB_NONE) xcb_clear_area(connection_.get(), 0, window, 0, 0, 0, 0);
}

void StandInWindow::draw() const {
    if (text_.empty()) return;
    auto* const c = connection_.get();
    // Six pixels to a letter of this font. In the first display's middle, for want of a better.
    const Reply<xcb_randr_get_monitors_reply_t> monitors(
        xcb_randr_get_monitors_reply(c, xcb_randr_get_monitors(c, screen_->root, 1), nullptr));
    if (!monitors) return;
    const auto count = static_cast<std::uint8_t>(std::min<std::size_t>(text_.size(), 255));
    for (auto at = xcb_randr_get_monitors_monitors_iterator(monitors.get()); at.rem;
         xcb_randr_monitor_info_next(&at)) {
        const auto& display = *at.data;
        const auto x = static_cast<std::int16_t>(display.x + display.width / 2 - count * 3);
        const auto y = static_cast<std::int16_t>(display.y + display.height / 2);
        for (const auto window : {window_, overlay_->window()})
            if (window != XCB_NONE) xcb_image_text_8(c, count, window, pen_, x, y, text_.data());
    }
    xcb_flush(c);
}

void StandInWindow::withdraw() {
    if (!connection_) return;
    isUp_ = appHasKeys_ = false;
    watchInput(false);
    overlay_->release();
    text_.clear();
    xcb_unmap_window(connection_.get(), window_);
    xcb_delete_property(connection_.get(), window_, takesKeys_);
    xcb_flush(connection_.get());
}

}  // namespace OrvelApp
