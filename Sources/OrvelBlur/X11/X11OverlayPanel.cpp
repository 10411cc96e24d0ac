#include "OrvelBlur/X11/X11OverlayPanel.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <xcb/xcbext.h>

#include "OrvelBlur/BlurBackend.h"

namespace OrvelBlur {

using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

constexpr int retryMilliseconds = 4;
constexpr xcb_keycode_t escapeKey = 9;

xcb_connection_t* connection() {
    return X11::shared().connection();
}

// Partial pixels count as whole ones: a display's last row must never stay uncovered.
PixelRect toPixels(const OrvelCore::Rect& rect) {
    const int x = static_cast<int>(std::floor(rect.x));
    const int y = static_cast<int>(std::floor(rect.y));
    return {x, y, std::max(1, static_cast<int>(std::ceil(rect.maxX())) - x),
            std::max(1, static_cast<int>(std::ceil(rect.maxY())) - y)};
}

}  // namespace

BlurSupport BlurSupport::current() {
    // The major version of the X protocol is used as the system's; the drawing was verified on 11.
    return {RenderServer::shared().canBlur(),
            xcb_get_setup(connection())->protocol_major_version,
            {11}};
}

std::unique_ptr<OverlayPanel> OverlayPanel::make(const OrvelCore::Rect& frame, int level) {
    return std::make_unique<X11OverlayPanel>(frame, level);
}

X11OverlayPanel::X11OverlayPanel(const OrvelCore::Rect& frame, int level)
    : window_(toPixels(frame), level),
      shape_(window_),
      position_(window_, [this] { paint(window_.bounds()); }),
      scene_(window_, layers_,
             [this] {
                 isDirty_ = true;
                 display();
             }),
      front_(window_,
             [this](const PixelRect& area) {
                 if (isVisible()) paint(area);
             }),
      painter_(layers_, window_, position_, scene_, front_),
      focus_(window_, [this] {
          // The handler may destroy the panel, and with it the function.
          const auto changed = onKeyChanged;
          if (changed) changed();
      }) {
    events_ = X11::shared().onEvent([this](const auto& event) { handle(event); });
    retry_.setSingleShot(true);
    retry_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&retry_, &QTimer::timeout, [this] { display(); });
    attach_.setSingleShot(true);
    QObject::connect(&attach_, &QTimer::timeout, [this] { attachContent(); });
}

X11OverlayPanel::~X11OverlayPanel() {
    X11OverlayPanel::orderOut();
    events_.reset();
}

OrvelCore::Rect X11OverlayPanel::frame() const {
    const PixelRect& frame = window_.frame();
    return {static_cast<double>(frame.x), static_cast<double>(frame.y),
            static_cast<double>(frame.width), static_cast<double>(frame.height)};
}

void X11OverlayPanel::setFrame(const OrvelCore::Rect& frame) {
    window_.setFrame(toPixels(frame));
}

void X11OverlayPanel::setCollectionBehavior(std::uint32_t behavior) {
    // The server shows an override-redirect window on every desktop and over full screen, as all
    // bits in use require.
    const bool wasShaped = shape_.isShaped();
    window_.setAttached(behavior == CollectionBehavior::attached);
    if (wasShaped || shape_.isShaped()) shape_.apply();
}

bool X11OverlayPanel::owns(OrvelCore::WindowID windowNumber) const {
    return windowNumber == window_.id() || (host_ && windowNumber == host_->window());
}

void X11OverlayPanel::setIgnoresMouseEvents(bool ignores) {
    if (shape_.setIgnoresMouseEvents(ignores)) shape_.apply();
}

void X11OverlayPanel::setCornerRadius(double radius) {
    if (shape_.setCornerRadius(radius)) shape_.apply();
}

void X11OverlayPanel::setOpenings(const std::vector<OrvelCore::Rect>& openings) {
    if (shape_.setOpenings(openings)) shape_.apply();
}

void X11OverlayPanel::setWindowsInFront(const std::vector<OrvelCore::WindowID>& windows) {
    if (!front_.setWindows(windows) || !isVisible()) return;
    front_.update();
    paint(window_.bounds());
    X11::shared().flush();
}

template <class T>
void X11OverlayPanel::setLayer(T& layer, const T& value) {
    if (value == layer) return;
    layer = value;
    isDirty_ = true;
}

void X11OverlayPanel::setBackdrop(const Backdrop& backdrop) {
    setLayer(layers_.backdrop, backdrop);
}

bool X11OverlayPanel::setRadius(int radius) {
    if (!RenderServer::shared().canBlur()) return false;
    setLayer(layers_.radius, radius);
    return true;
}

void X11OverlayPanel::setTint(const OrvelCore::Color& tint) {
    setLayer(layers_.tint, tint);
}

void X11OverlayPanel::setOpacity(Layer layer, double opacity) {
    switch (layer) {
        case Layer::effect:
            return;  // The blur has no opacity, and every other backdrop is opaque.
        case Layer::tint:
            return setLayer(layers_.tintOpacity, opacity);
        case Layer::grain:
            return setLayer(layers_.grainOpacity, opacity);
        case Layer::content:
            return setLayer(layers_.contentOpacity, opacity);
    }
}

void X11OverlayPanel::setContent(std::shared_ptr<PanelContent> content) {
    content_ = std::dynamic_pointer_cast<const QtPanelContent>(content);
    if (host_) {
        host_.reset();
        focus_.contentChanged(nullptr);
        isDirty_ = true;
    }
    if (content_ && isVisible())
        attach_.start(0);
    else
        attach_.stop();
}

void X11OverlayPanel::attachContent() {
    if (!content_ || !isVisible()) return;
    // Destroy the old host first: the widget is rebuilt if another client has interfered with it.
    host_.reset();
    host_ = std::make_unique<ContentHost>(window_.id(),
                                          PixelSize{window_.frame().width, window_.frame().height},
                                          content_, [this] { cancel(); });
    focus_.contentChanged(host_.get());
    isDirty_ = true;
    display();
}

void X11OverlayPanel::display() {
    if (!isVisible() && !position_.hasOrder()) return;
    // Restacking must not wait for a frame. It also paints, because a window from behind which the
    // panel appears stays visible until something is drawn.
    if (isVisible() && position_.hasOrder()) {
        position_.apply();
        paint(window_.bounds());
    }
    const bool isPlaced = isVisible() && window_.placedFrame() == window_.frame();
    if (!isPlaced) forgetFrameInFlight();
    if (isFrameInFlight()) {
        retry_.start(retryMilliseconds);
        return X11::shared().flush();
    }
    retry_.stop();
    if (!isVisible()) {
        comeIn();
    } else if (!isPlaced) {
        moveOnScreen();
    } else {
        if (!std::exchange(isDirty_, false)) return X11::shared().flush();
        scene_.blur();
    }
    paint(window_.bounds());
    frameInFlight_ = xcb_get_input_focus(connection()).sequence;
    X11::shared().flush();
}

bool X11OverlayPanel::isFrameInFlight() {
    if (!frameInFlight_) return false;
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (xcb_poll_for_reply(connection(), *frameInFlight_, &reply, &error) == 0) return true;
    const XReply<void> freeReply(reply);
    const XReply<xcb_generic_error_t> freeError(error);
    frameInFlight_.reset();
    return false;
}

void X11OverlayPanel::forgetFrameInFlight() {
    if (!frameInFlight_) return;
    xcb_discard_reply(connection(), *frameInFlight_);
    frameInFlight_.reset();
}

/// The backdrop is made before the window is mapped, so that it never shows another picture.
void X11OverlayPanel::comeIn() {
    if (window_.placedFrame() != window_.frame()) moveOnScreen();
    position_.apply();
    scene_.start();
    front_.update();
    isDirty_ = false;
    scene_.blur();
    window_.map();
    if (content_ && !host_) attach_.start(0);
}

/// The backdrop of the new place is made first: until something is drawn there, the server shows
/// the old contents of the screen.
void X11OverlayPanel::moveOnScreen() {
    const PixelRect before = window_.placedFrame();
    const PixelRect& now = window_.frame();
    if (isVisible()) {
        scene_.move(before);
        isDirty_ = false;
        scene_.blur();
    }
    window_.place();
    if (isVisible()) {
        front_.update();
        position_.moved(before);
    }
    if (shape_.differsFrom(before)) shape_.apply();
    const bool isResized = before.width != now.width || before.height != now.height;
    if (isResized && host_) host_->panelResized({now.width, now.height});
}

void X11OverlayPanel::orderFrontRegardless() {
    position_.orderFront();
}

void X11OverlayPanel::orderAbove(OrvelCore::WindowID windowNumber) {
    position_.orderAbove(static_cast<xcb_window_t>(windowNumber));
    if (isVisible()) display();
}

void X11OverlayPanel::orderBelow(OrvelCore::WindowID windowNumber) {
    position_.orderBelow(static_cast<xcb_window_t>(windowNumber));
    if (isVisible()) display();
}

void X11OverlayPanel::orderOut() {
    position_.cancelOrder();
    retry_.stop();
    attach_.stop();
    if (!isVisible()) return;
    focus_.drop();
    scene_.stop();
    window_.unmap();
    position_.orderOut();
    host_.reset();
    scene_.clear();
    front_.clear();
    painter_.clear();
    forgetFrameInFlight();
    X11::shared().flush();
}

void X11OverlayPanel::makeKeyAndOrderFront() {
    orderFrontRegardless();
    display();
    if (canBecomeKey()) focus_.take(host_.get());
}

void X11OverlayPanel::cancel() {
    const auto cancelled = onCancel;
    if (cancelled) cancelled();
}

void X11OverlayPanel::handle(const xcb_generic_event_t& event) {
    if (repair(event) || !isVisible()) return;
    if (host_ && host_->takeDamage(event)) {
        paint(host_->frame());
        X11::shared().flush();
        return;
    }
    switch (event.response_type) {
        case XCB_EXPOSE: {
            const auto& expose = reinterpret_cast<const xcb_expose_event_t&>(event);
            if (expose.window != window_.id()) break;
            paint({expose.x, expose.y, expose.width, expose.height});
            if (expose.count == 0) X11::shared().flush();
            break;
        }
        case XCB_BUTTON_PRESS: {
            const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(event);
            // The handler may destroy the panel, and with it the function.
            const auto click = onClick;
            // Wheel steps are button events too.
            const bool isPrimary = press.detail == XCB_BUTTON_INDEX_1;
            // What looks like a window in front is not this panel.
            const bool isOnFront = front_.isIn({press.event_x, press.event_y, 1, 1});
            if (press.event == window_.id() && isPrimary && !isOnFront && click) click();
            break;
        }
        case XCB_KEY_PRESS: {
            const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(event);
            if (press.event == window_.id() && press.detail == escapeKey) cancel();
            break;
        }
        default:
            focus_.handle(event, host_.get());
            break;
    }
}

/// Undoes what another client has done to the window or its content. Returns true if the event was
/// about that.
bool X11OverlayPanel::repair(const xcb_generic_event_t& event) {
    switch (window_.repair(event, shape_.isShaped())) {
        case OrvelSystem::WindowChange::none:
            break;
        case OrvelSystem::WindowChange::repaired:
            position_.orderAgain();
            position_.apply();
            paint(window_.bounds());
            focus_.retake(host_.get());
            X11::shared().flush();
            return true;
        case OrvelSystem::WindowChange::destroyed:
            replaceWindow();
            return true;
    }
    if (!host_ || !host_->isEndedBy(event)) return false;
    attachContent();
    return true;
}

/// Called after another client has destroyed the window. Until the new window is drawn, the
/// composite overlay and the backstop of a lock hide the desktop.
void X11OverlayPanel::replaceWindow() {
    const bool wasVisible = isVisible();
    const bool wasKey = focus_.isKey();
    X11OverlayPanel::orderOut();
    window_.replace();
    position_.replaced();
    shape_.apply();
    if (!wasVisible) return;
    position_.orderAgain();
    display();
    focus_.restore(wasKey, host_.get());
}

}  // namespace OrvelBlur
