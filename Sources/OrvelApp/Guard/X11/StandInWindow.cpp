#include "OrvelApp/Guard/X11/StandInWindow.h"

#include <cstdlib>
#include <cstring>

#include "OrvelSystem/Uptime.h"
#include "OrvelSystem/X11/StandIn.h"
#include "OrvelSystem/X11/XReply.h"

namespace OrvelApp {

using OrvelSystem::StandIn;
using OrvelSystem::XReply;

namespace {

constexpr std::uint32_t background = StandInText::background;
// The largest extent that X11 coordinates can express, in pixels. It costs nothing where the server
// draws directly to the screen.
constexpr std::uint16_t largest = 32767;
// Seconds, as in the app.
constexpr double lockerPatience = 3;

}  // namespace

void StandInWindow::make() {
    const char* const named = std::getenv("DISPLAY");
    const std::string display = named ? named : "";
    if (connection_ && display == display_ && !xcb_connection_has_error(connection_.get())) return;
    forget();
    display_ = display;
    connection_.reset(display.empty() ? nullptr : xcb_connect(display.c_str(), &screenNumber_));
    if (connection_ && xcb_connection_has_error(connection_.get())) connection_.reset();
    if (!connection_) return;
    auto* const c = connection_.get();
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(c));
    for (int number = screenNumber_; number > 0 && screens.rem > 1; --number)
        xcb_screen_next(&screens);
    screen_ = screens.data;
    overlay_.emplace(c, screenNumber_);
    input_.emplace(c, screen_->root);
    input_->net().watchGrabs();
    drawing_.emplace(c, screen_->root);
    takesKeys_ = atom(StandIn::takesKeys);
    hasNet_ = atom(StandIn::hasNet);
    makeWindow();
}

void StandInWindow::makeWindow() {
    auto* const c = connection_.get();
    window_ = xcb_generate_id(c);
    const std::uint32_t values[] = {background, 1,
                                    OrvelSystem::windowRepairEvents | XCB_EVENT_MASK_EXPOSURE,
                                    screen_->default_colormap};
    xcb_create_window(
        c, XCB_COPY_FROM_PARENT, window_, screen_->root, 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual,
        XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values);
    OrvelSystem::watchShape(c, window_);
    offer();
}

void StandInWindow::offer() const {
    xcb_set_selection_owner(connection_.get(), window_, atom(StandIn::selection), XCB_CURRENT_TIME);
    xcb_flush(connection_.get());
}

/// Discards everything that belongs to a connection that has ended.
void StandInWindow::forget() {
    const bool wasUp = isUp_;
    isUp_ = appHasKeys_ = appHoldsOverlay_ = hasLocker_ = false;
    text_.clear();
    typed_.clear();
    overlay_.reset();
    input_.reset();
    drawing_.reset();
    connection_.reset();
    if (wasUp) onFell();
}

std::array<int, 2> StandInWindow::descriptors() const {
    if (!connection_) return {-1, -1};
    return {xcb_get_file_descriptor(connection_.get()), input_->net().descriptor()};
}

xcb_atom_t StandInWindow::atom(const char* name) const {
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_.get(),
        xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

bool StandInWindow::handleEvents() {
    if (!connection_) return false;
    input_->net().handleGrabs();
    bool any = false;
    while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
        handle(*event);
        any = true;
    }
    if (any) settle();
    if (!xcb_connection_has_error(connection_.get())) return any;
    // Another client can end this connection while the server goes on.
    const bool wasUp = isUp_;
    make();
    if (wasUp) putUp();
    return connection_ != nullptr;
}

void StandInWindow::handle(const xcb_generic_event_t& event) {
    StandInInput::Key key;
    if (input_->read(event, key)) {
        if (isUp_) type(key);
        return;
    }
    // While the window is down, the app sets its size.
    const auto wanted = isUp_ ? wantedState() : OrvelSystem::WindowState{};
    if (isUp_ || event.response_type == XCB_DESTROY_NOTIFY) {
        const auto change =
            OrvelSystem::repairWindow(connection_.get(), *screen_, window_, wanted, event);
        if (change == OrvelSystem::WindowChange::destroyed) return replaceWindow();
    }
    // Events that another client has sent have an additional bit set and match none of these.
    switch (event.response_type) {
        case XCB_MAP_NOTIFY:
            if (reinterpret_cast<const xcb_map_notify_event_t&>(event).window == window_) rise();
            break;
        case XCB_UNMAP_NOTIFY: {
            const auto& unmap = reinterpret_cast<const xcb_unmap_notify_event_t&>(event);
            if (unmap.window != window_ || !isUp_) break;
            // Only the app may unmap the window, and it does so when its own covers are up.
            if (appRuns_ && above().locker)
                fall();
            else
                putUp();
            break;
        }
        case XCB_PROPERTY_NOTIFY: {
            const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            // When a window is destroyed, the server reports that its properties are deleted.
            if (property.window != window_ || property.atom != takesKeys_) break;
            // Before any request that waits for a reply: the app may have ended by then.
            if (property.state == XCB_PROPERTY_NEW_VALUE) catchInput(true);
            readKeys();
            break;
        }
        case XCB_EXPOSE:
            draw();
            break;
        case XCB_SELECTION_CLEAR:
            offer();
            break;
        default:
            break;
    }
}

void StandInWindow::rise() {
    if (isUp_) return;
    isUp_ = true;
    clear();
    watchStack(true);
    onRose();
}

void StandInWindow::fall() {
    if (!isUp_) return;
    isUp_ = false;
    text_.clear();
    typed_.clear();
    watchStack(false);
    if (!appHasKeys_) input_->letDevicesGo();
    onFell();
}

/// `isMapped` stays false, because only `handle` knows whether it was the app that unmapped the
/// window.
OrvelSystem::WindowState StandInWindow::wantedState() const {
    // A compositing manager keeps a pixmap of each window, which would take gigabytes at the
    // largest size.
    if (OrvelSystem::isComposited(connection_.get(), screenNumber_))
        return {.width = screen_->width_in_pixels, .height = screen_->height_in_pixels};
    return {.width = largest, .height = largest};
}

void StandInWindow::putUp() {
    make();
    if (!connection_) return;
    const auto wanted = wantedState();
    const std::uint32_t values[] = {0, 0, wanted.width, wanted.height, XCB_STACK_MODE_ABOVE};
    xcb_configure_window(connection_.get(), window_,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT | XCB_CONFIG_WINDOW_STACK_MODE,
                         values);
    xcb_map_window(connection_.get(), window_);
    catchInput(true);
    // The end of the app may be known before the server reports that the window is up.
    if (!appRuns_) input_->catchDevices();
    xcb_flush(connection_.get());
    rise();
}

/// Called after another client has destroyed the window. The app is notified and takes the new
/// window.
void StandInWindow::replaceWindow() {
    const bool wasUp = isUp_;
    makeWindow();
    tellNet();
    if (wasUp) {
        isUp_ = false;
        putUp();
    }
}

/// Reads the current value rather than that of the event: grabs that are held for an app that has
/// released its own would be in its way.
void StandInWindow::readKeys() {
    const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_.get(),
        xcb_get_property(connection_.get(), 0, window_, takesKeys_, XCB_ATOM_CARDINAL, 0, 1),
        nullptr));
    std::uint32_t keys = StandIn::free;
    if (reply && xcb_get_property_value_length(reply.get()) == sizeof keys)
        std::memcpy(&keys, xcb_get_property_value(reply.get()), sizeof keys);
    appHasKeys_ = keys != StandIn::free;
    appHoldsOverlay_ = (keys & StandIn::underCompositeOverlay) != 0;
    if ((keys & StandIn::takenFromDevices) != 0)
        input_->catchDevices();
    else if ((keys & StandIn::taken) != 0 || (keys == StandIn::free && !isUp_))
        input_->letDevicesGo();
    if (appHoldsOverlay_) overlay_->hold(background);
}

void StandInWindow::settle() {
    const auto over = isUp_ ? above() : OrvelSystem::WindowsAbove{};
    if (isUp_ ? over.locker : !appHoldsOverlay_) overlay_->release();
    if (isUp_) {
        freeKeys();
        if (!appRuns_) holdDevices(over.locker);
    }
    catchInput(appHasKeys_ || isUp_);
    if (over.any && !over.locker) {
        const std::uint32_t top = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection_.get(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &top);
    }
    xcb_flush(connection_.get());
}

void StandInWindow::tend(bool appRuns) {
    appRuns_ = appRuns;
    if (!connection_) return;
    if (!isUp_) return;
    freeKeys();
    const bool hasLocker = above().locker;
    if (!appRuns_) holdDevices(hasLocker);
    if (hasLocker) return;
    // If a program that is not a locker has grabbed the keyboard, the owner could not type.
    rivalHasKeys_ = OrvelSystem::isKeyboardGrabbedByOther(connection_.get(), screen_->root);
    if (rivalHasKeys_) input_->takeDevices();
}

/// Without the app: a program that grabs the keyboard must not receive a key, unless it is the
/// locker that covers the screen. The server does not tell which client has the keyboard, but a
/// locker that does not get it gives up within `lockerPatience`.
void StandInWindow::holdDevices(bool hasLocker) {
    hasLocker_ = hasLocker;
    if (!hasLocker) {
        lockerCameAt_.reset();
        input_->catchDevices();
        return;
    }
    const double now = OrvelSystem::uptime();
    if (!lockerCameAt_) lockerCameAt_ = now;
    if (input_->hasDevices() && (!rivalHasKeys_ || now - *lockerCameAt_ >= lockerPatience) &&
        OrvelSystem::isKeyboardGrabbedByOther(connection_.get(), screen_->root)) {
        input_->letDevicesGo();
    }
}

bool StandInWindow::needsTendingSoon() const {
    return isUp_ && !appRuns_ && input_ && input_->hasDevices() && hasLocker_;
}

void StandInWindow::freeKeys() {
    auto* const c = connection_.get();
    const XReply<xcb_get_input_focus_reply_t> held(
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

void StandInWindow::catchInput(bool isWanted) {
    auto& net = input_->net();
    if (isWanted == net.isUp()) return;
    if (isWanted)
        net.putUp();
    else
        net.takeDown();
    tellNet();
}

/// The app waits for this property before it releases its own grabs.
void StandInWindow::tellNet() {
    const std::uint32_t one = 1;
    if (input_->net().isUp())
        xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_, hasNet_,
                            XCB_ATOM_CARDINAL, 32, 1, &one);
    else
        xcb_delete_property(connection_.get(), window_, hasNet_);
    xcb_flush(connection_.get());
}

OrvelSystem::WindowsAbove StandInWindow::above() const {
    return OrvelSystem::windowsAbove(connection_.get(), screen_->root,
                                     [this](xcb_window_t window) { return window == window_; });
}

void StandInWindow::type(const StandInInput::Key& key) {
    using Kind = StandInInput::Key::Kind;
    switch (key.kind) {
        case Kind::text:
            typed_.append(key.text);
            break;
        case Kind::erase:
            typed_.removeLastCharacter();
            break;
        case Kind::clear:
            typed_.clear();
            break;
        case Kind::enter:
            onEntered();
            break;
        case Kind::other:
            return;
    }
    clear();
    draw();
    xcb_flush(connection_.get());
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
    if (!text_.empty())
        drawing_->draw({window_, overlay_->window()}, text_, typed_.characterCount());
}

void StandInWindow::withdraw() {
    if (!connection_) return;
    appHasKeys_ = appHoldsOverlay_ = false;
    fall();
    overlay_->release();
    xcb_unmap_window(connection_.get(), window_);
    xcb_delete_property(connection_.get(), window_, takesKeys_);
    input_->letDevicesGo();
    input_->releasePressed();
    catchInput(false);
    xcb_flush(connection_.get());
}

}  // namespace OrvelApp
