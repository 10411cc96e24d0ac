#include "OrvelBlur/X11/X11OverlayPanel.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include <xcb/composite.h>
#include <xcb/shape.h>
#include <xcb/xcb_cursor.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include "OrvelBlur/BlurBackend.h"
#include "OrvelBlur/X11/PanelStack.h"
#include "OrvelSystem/Qt/QtScreens.h"
#include "OrvelSystem/X11/WindowRepair.h"
#include "OrvelSystem/X11/WindowServerMirror.h"

namespace OrvelBlur {

using OrvelCore::Color;
using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

constexpr int retryMilliseconds = 4;
constexpr int retakePatience = 100;  // ms
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

Color faded(Color color, double opacity) {
    color.alpha *= opacity;
    return color;
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
    : level_(level), frame_(toPixels(frame)), placed_(frame_) {
    makeWindow();
    events_ = X11::shared().onEvent([this](const auto& event) { handle(event); });
    retry_.setSingleShot(true);
    retry_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&retry_, &QTimer::timeout, [this] { display(); });
    attach_.setSingleShot(true);
    retake_.setSingleShot(true);
    QObject::connect(&retake_, &QTimer::timeout, [this] { setKey(false); });
    QObject::connect(&attach_, &QTimer::timeout, [this] { attachContent(); });
}

void X11OverlayPanel::makeWindow() {
    auto& x11 = X11::shared();
    window_ = xcb_generate_id(connection());
    // Without a background the server shows no colour before the first frame is drawn.
    std::uint32_t mask = XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                         XCB_CW_EVENT_MASK | XCB_CW_COLORMAP;
    std::vector<std::uint32_t> values{XCB_BACK_PIXMAP_NONE, 0, 1,
                                      XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_BUTTON_PRESS |
                                          XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_FOCUS_CHANGE |
                                          OrvelSystem::windowRepairEvents,
                                      x11.screen()->default_colormap};
    if (const xcb_cursor_t cursor = arrowCursor(); cursor != XCB_NONE) {
        mask |= XCB_CW_CURSOR;
        values.push_back(cursor);
    }
    xcb_create_window(connection(), XCB_COPY_FROM_PARENT, window_, x11.root(),
                      static_cast<std::int16_t>(frame_.x), static_cast<std::int16_t>(frame_.y),
                      static_cast<std::uint16_t>(frame_.width),
                      static_cast<std::uint16_t>(frame_.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      x11.screen()->root_visual, mask, values.data());
    static constexpr char wmClass[] = "karvo\0Karvo";
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, sizeof wmClass, wmClass);
    static constexpr char name[] = "Karvo";
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, sizeof name - 1, name);
    const auto tellCompositor = [&](const char* property, std::uint32_t value) {
        xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window_, x11.atom(property),
                            XCB_ATOM_CARDINAL, 32, 1, &value);
    };
    // Otherwise compositing managers draw shadows around override-redirect windows.
    tellCompositor("_COMPTON_SHADOW", 0);
    // A panel that fills a display must not bypass the compositing manager, which would hide the
    // windows above it.
    tellCompositor("_NET_WM_BYPASS_COMPOSITOR", 2);
    const auto& server = RenderServer::shared();
    if (server.canBlur())
        xcb_composite_redirect_subwindows(connection(), window_, XCB_COMPOSITE_REDIRECT_MANUAL);
    if (const auto format = server.rootFormat())
        target_ = server.makePicture(window_, format, false);
    const auto stated = static_cast<std::uint32_t>(level_);
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, window_,
                        x11.atom(OrvelSystem::WindowServerMirror::levelProperty), XCB_ATOM_CARDINAL,
                        32, 1, &stated);
    PanelStack::shared().add(window_, level_, true);
    x11.keepFromQt(window_);
    OrvelSystem::watchShape(connection(), window_);
    if (level_ >= WindowLevel::lock) {
        roof_ =
            Roof::shared().subscribe({.window = window_,
                                      .frame = [this] { return isVisible_ ? frame_ : PixelRect{}; },
                                      .draw =
                                          [this] {
                                              if (isVisible_) paint(bounds());
                                          }});
    }
}

X11OverlayPanel::~X11OverlayPanel() {
    X11OverlayPanel::orderOut();
    events_.reset();
    target_.reset();
    PanelStack::shared().remove(window_);
    X11::shared().forget(window_);
    xcb_destroy_window(connection(), window_);
    X11::shared().flush();
}

/// Called after another client has destroyed the window. Until the new window is drawn, the roof
/// and the shield of a lock hide the desktop.
void X11OverlayPanel::replaceWindow() {
    const bool wasVisible = isVisible_;
    const bool wasKey = isKey_;
    X11OverlayPanel::orderOut();
    target_.reset();
    PanelStack::shared().remove(window_);
    X11::shared().forget(window_);
    makeWindow();
    shapeWindow();
    placed_ = frame_;
    if (!wasVisible) return;
    pendingOrder_ = order_;
    display();
    isKey_ = wasKey;
    retakeFocus();
}

/// Undoes what another client has done to the window or its content. Returns true if the event was
/// about that.
bool X11OverlayPanel::repair(const xcb_generic_event_t& event) {
    const auto at = [](int value) { return static_cast<std::int16_t>(value); };
    const OrvelSystem::WindowState wanted{
        .isMapped = isVisible_,
        .x = at(placed_.x),
        .y = at(placed_.y),
        .width = static_cast<std::uint16_t>(placed_.width),
        .height = static_cast<std::uint16_t>(placed_.height),
        .isUnshaped = openings_.empty() && (isAttached_ || cornerRadius_ <= 0)};
    switch (
        OrvelSystem::repairWindow(connection(), *X11::shared().screen(), window_, wanted, event)) {
        case OrvelSystem::WindowChange::none:
            break;
        case OrvelSystem::WindowChange::repaired:
            pendingOrder_ = order_;
            stack();
            paint(bounds());
            retakeFocus();
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

OrvelCore::Rect X11OverlayPanel::frame() const {
    return {static_cast<double>(frame_.x), static_cast<double>(frame_.y),
            static_cast<double>(frame_.width), static_cast<double>(frame_.height)};
}

void X11OverlayPanel::setFrame(const OrvelCore::Rect& frame) {
    frame_ = toPixels(frame);
}

void X11OverlayPanel::setCollectionBehavior(std::uint32_t behavior) {
    // The server shows an override-redirect window on every desktop and over full screen, as all
    // bits in use require.
    isAttached_ = behavior == CollectionBehavior::attached;
    if (cornerRadius_ > 0 || !openings_.empty()) shapeWindow();
}

bool X11OverlayPanel::owns(std::uint64_t windowNumber) const {
    return windowNumber == window_ || (host_ && windowNumber == host_->window());
}

void X11OverlayPanel::setIgnoresMouseEvents(bool ignores) {
    if (ignores == ignoresMouseEvents_) return;
    ignoresMouseEvents_ = ignores;
    shapeWindow();
}

void X11OverlayPanel::setBackdrop(const Backdrop& backdrop) {
    if (backdrop == backdrop_) return;
    backdrop_ = backdrop;
    isDirty_ = true;
}

bool X11OverlayPanel::isBlurring() const {
    return std::holds_alternative<ServerBlur>(backdrop_) && RenderServer::shared().canBlur();
}

bool X11OverlayPanel::setRadius(int radius) {
    if (!RenderServer::shared().canBlur()) return false;
    if (radius == radius_) return true;
    radius_ = radius;
    isDirty_ = true;
    return true;
}

void X11OverlayPanel::setTint(const Color& tint) {
    if (tint == tint_) return;
    tint_ = tint;
    isDirty_ = true;
}

void X11OverlayPanel::setCornerRadius(double radius) {
    if (radius == cornerRadius_) return;
    cornerRadius_ = radius;
    shapeWindow();
}

void X11OverlayPanel::setOpenings(const std::vector<OrvelCore::Rect>& openings) {
    if (openings == openings_) return;
    openings_ = openings;
    shapeWindow();
}

void X11OverlayPanel::setOpacity(Layer layer, double opacity) {
    double* value = nullptr;
    switch (layer) {
        case Layer::effect:
            return;  // The blur has no opacity, and every other backdrop is opaque.
        case Layer::tint:
            value = &tintOpacity_;
            break;
        case Layer::grain:
            value = &grainOpacity_;
            break;
        case Layer::content:
            value = &contentOpacity_;
            break;
    }
    if (*value == opacity) return;
    *value = opacity;
    isDirty_ = true;
}

void X11OverlayPanel::setContent(std::shared_ptr<PanelContent> content) {
    content_ = std::dynamic_pointer_cast<const QtPanelContent>(content);
    if (host_) {
        host_.reset();
        if (isKey_) takeFocus();
        isDirty_ = true;
    }
    if (content_ && isVisible_)
        attach_.start(0);
    else
        attach_.stop();
}

void X11OverlayPanel::attachContent() {
    if (!content_ || !isVisible_) return;
    // Destroy the old host first: the widget is rebuilt if another client has interfered with it.
    host_.reset();
    host_ = std::make_unique<ContentHost>(window_, PixelSize{frame_.width, frame_.height}, content_,
                                          [this] { cancel(); });
    if (isKey_) takeFocus();
    isDirty_ = true;
    display();
}

void X11OverlayPanel::display() {
    if (!isVisible_ && pendingOrder_ == Order::none) return;
    // Restacking must not wait for a frame. It also paints, because a window from behind which the
    // panel appears stays visible until something is drawn.
    if (isVisible_ && pendingOrder_ != Order::none) {
        stack();
        paint(bounds());
    }
    const bool isPlaced = isVisible_ && placed_ == frame_;
    if (frameInFlight_ && !isPlaced) {
        xcb_discard_reply(connection(), *frameInFlight_);
        frameInFlight_.reset();
    }
    if (frameInFlight_) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(connection(), *frameInFlight_, &reply, &error) == 0) {
            retry_.start(retryMilliseconds);
            X11::shared().flush();
            return;
        }
        const XReply<void> freeReply(reply);
        const XReply<xcb_generic_error_t> freeError(error);
        frameInFlight_.reset();
    }
    retry_.stop();
    if (!isVisible_)
        comeIn();
    else if (!isPlaced)
        moveOnScreen();
    else if (std::exchange(isDirty_, false))
        refreshBackdrop();
    else
        return X11::shared().flush();
    paint(bounds());
    frameInFlight_ = xcb_get_input_focus(connection()).sequence;
    X11::shared().flush();
}

void X11OverlayPanel::orderFrontRegardless() {
    pendingOrder_ = Order::front;
}

void X11OverlayPanel::orderAbove(std::uint64_t windowNumber) {
    pendingOrder_ = Order::above;
    pendingSibling_ = static_cast<xcb_window_t>(windowNumber);
    if (isVisible_) display();
}

void X11OverlayPanel::orderBelow(std::uint64_t windowNumber) {
    pendingOrder_ = Order::below;
    pendingSibling_ = static_cast<xcb_window_t>(windowNumber);
    if (isVisible_) display();
}

void X11OverlayPanel::stack() {
    auto& stack = PanelStack::shared();
    if (pendingOrder_ != Order::none) order_ = pendingOrder_;
    switch (std::exchange(pendingOrder_, Order::none)) {
        case Order::none:
            break;
        case Order::front:
            stack.orderFront(window_);
            break;
        case Order::above:
            stack.orderAbove(window_, pendingSibling_);
            break;
        case Order::below:
            stack.orderBelow(window_, pendingSibling_);
            break;
    }
}

/// The backdrop is made before the window is mapped, so that it never shows another picture.
void X11OverlayPanel::comeIn() {
    if (placed_ != frame_) moveOnScreen();
    stack();
    isVisible_ = true;
    if (isBlurring()) {
        live_ = SceneSources::shared().subscribe([this](const auto& areas, const auto& redrawn) {
            const auto isHere = [this](const PixelRect& area) {
                return !area.intersected(frame_).isEmpty();
            };
            // Only redrawn windows that the scene is made of count: this panel's own drawing, or
            // that of a panel above, must not trigger the next.
            const auto isDrawn = [this](const auto& source) {
                return std::ranges::find(sources_, source) != sources_.end();
            };
            if (std::ranges::none_of(areas, isHere) && std::ranges::none_of(redrawn, isDrawn))
                return;
            composeScene();
            isDirty_ = true;
            display();
        });
        if (isAttached_) {
            SceneSources::shared().refresh();
            composeScene();
        } else {
            captureScene();
        }
    }
    isDirty_ = false;
    refreshBackdrop();
    xcb_map_window(connection(), window_);
    if (content_ && !host_) attach_.start(0);
}

/// The backdrop of the new place is made first: until something is drawn there, the server shows
/// the old contents of the screen.
void X11OverlayPanel::moveOnScreen() {
    const PixelRect before = std::exchange(placed_, frame_);
    const bool isResized = before.width != frame_.width || before.height != frame_.height;
    if (isVisible_) {
        if (isBlurring()) {
            // A window that begins to move must not wait until the server keeps all windows below
            // it, so for the moment their contents are taken from the screen.
            if (isAttached_ && !before.contains(frame_)) {
                captureScene();
                drawSources(capture_);
                SceneSources::shared().invalidate(frame_);
            } else {
                composeScene();
            }
        }
        isDirty_ = false;
        refreshBackdrop();
    }
    const std::uint32_t values[4] = {
        static_cast<std::uint32_t>(frame_.x), static_cast<std::uint32_t>(frame_.y),
        static_cast<std::uint32_t>(frame_.width), static_cast<std::uint32_t>(frame_.height)};
    xcb_configure_window(connection(), window_,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values);
    if (isVisible_ && roof_) Roof::shared().leave(before);
    if (!isResized) return;
    if (cornerRadius_ > 0 || !openings_.empty()) shapeWindow();
    if (host_) host_->panelResized({frame_.width, frame_.height});
}

void X11OverlayPanel::orderOut() {
    pendingOrder_ = Order::none;
    retry_.stop();
    attach_.stop();
    retake_.stop();
    live_.reset();
    if (!isVisible_) return;
    isVisible_ = false;
    isKey_ = false;
    xcb_unmap_window(connection(), window_);
    PanelStack::shared().orderOut(window_);
    if (roof_) Roof::shared().leave(placed_);
    host_.reset();
    capture_ = {};
    scene_ = {};
    sources_.clear();
    buffer_ = {};
    pyramid_ = {};
    blurred_ = nullptr;
    if (frameInFlight_) {
        xcb_discard_reply(connection(), *frameInFlight_);
        frameInFlight_.reset();
    }
    X11::shared().flush();
}

void X11OverlayPanel::makeKeyAndOrderFront() {
    orderFrontRegardless();
    display();
    if (!canBecomeKey()) return;
    takeFocus();
    // Assumed until the server reports otherwise: waiting for its reply would delay the cover.
    setKey(true);
}

void X11OverlayPanel::takeFocus() {
    if (host_) {
        host_->focus();
    } else {
        // With the server's current time: a request with the time of the last event received here
        // would be ignored if another client has taken the focus since.
        const auto cookie =
            xcb_set_input_focus(connection(), XCB_INPUT_FOCUS_PARENT, window_, XCB_CURRENT_TIME);
        focusRequest_ = cookie.sequence;
    }
    X11::shared().flush();
}

/// Called after another client has taken the window away, and the focus with it.
void X11OverlayPanel::retakeFocus() {
    if (!isKey_) return;
    retake_.start(retakePatience);
    takeFocus();
}

void X11OverlayPanel::setKey(bool isKey) {
    retake_.stop();
    if (isKey == isKey_) return;
    isKey_ = isKey;
    const auto changed = onKeyChanged;
    if (changed) changed();
}

void X11OverlayPanel::cancel() {
    const auto cancelled = onCancel;
    if (cancelled) cancelled();
}

void X11OverlayPanel::shapeWindow() {
    if (!RenderServer::shared().hasShape()) return;
    std::vector<xcb_rectangle_t> rows;
    // X11 windows have square corners, which a rounded cover would leave visible.
    const int radius = isAttached_ ? 0
                                   : std::min(static_cast<int>(std::lround(cornerRadius_)),
                                              std::min(frame_.width, frame_.height) / 2);
    for (int y = 0; y < radius; ++y) {
        const double up = radius - y - 0.5;
        const int inset =
            static_cast<int>(std::lround(radius - std::sqrt(radius * radius - up * up)));
        const auto width = static_cast<std::uint16_t>(frame_.width - 2 * inset);
        rows.push_back({static_cast<std::int16_t>(inset), static_cast<std::int16_t>(y), width, 1});
        rows.push_back({static_cast<std::int16_t>(inset),
                        static_cast<std::int16_t>(frame_.height - 1 - y), width, 1});
    }
    rows.push_back({0, static_cast<std::int16_t>(radius), static_cast<std::uint16_t>(frame_.width),
                    static_cast<std::uint16_t>(frame_.height - 2 * radius)});
    const auto set = [&](xcb_shape_sk_t kind, std::size_t count) {
        xcb_shape_rectangles(connection(), XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_UNSORTED,
                             window_, 0, 0, static_cast<std::uint32_t>(count), rows.data());
    };
    // With no shape mask the server uses the window's rectangle, so resizing needs no update.
    const auto setNone = [&](xcb_shape_sk_t kind) {
        xcb_shape_mask(connection(), XCB_SHAPE_SO_SET, kind, window_, 0, 0, XCB_PIXMAP_NONE);
    };
    radius > 0 || !openings_.empty() ? set(XCB_SHAPE_SK_BOUNDING, rows.size())
                                     : setNone(XCB_SHAPE_SK_BOUNDING);
    std::vector<xcb_rectangle_t> open;
    for (const auto& opening : openings_)
        open.push_back({static_cast<std::int16_t>(std::lround(opening.x - frame_.x)),
                        static_cast<std::int16_t>(std::lround(opening.y - frame_.y)),
                        static_cast<std::uint16_t>(std::lround(opening.width)),
                        static_cast<std::uint16_t>(std::lround(opening.height))});
    if (!open.empty())
        xcb_shape_rectangles(connection(), XCB_SHAPE_SO_SUBTRACT, XCB_SHAPE_SK_BOUNDING,
                             XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0,
                             static_cast<std::uint32_t>(open.size()), open.data());
    if (ignoresMouseEvents_)
        set(XCB_SHAPE_SK_INPUT, 0);
    else
        radius > 0 ? set(XCB_SHAPE_SK_INPUT, rows.size()) : setNone(XCB_SHAPE_SK_INPUT);
    X11::shared().flush();
}

void X11OverlayPanel::captureScene() {
    auto& server = RenderServer::shared();
    constexpr int scale = BlurPyramid::sceneScale;
    const PixelSize size = sceneSize();
    capture_ = server.makeCanvas(size, false);
    const auto screen = server.makePicture(X11::shared().root(), server.rootFormat(), true);
    server.drawScaled(XCB_RENDER_PICT_OP_SRC, screen.id(), capture_.picture.id(), scale, scale,
                      frame_.x, frame_.y, {0, 0, size.width, size.height});
    scene_ = {};
}

void X11OverlayPanel::composeScene() {
    const PixelSize size = sceneSize();
    if (scene_.size != size) scene_ = RenderServer::shared().makeCanvas(size, false);
    sources_ = SceneSources::shared().below(window_, neededArea());
    if (sources_.empty() || !fillsScene(*sources_.front())) drawBackground();
    drawSources(scene_);
}

PixelSize X11OverlayPanel::sceneSize() const {
    constexpr int scale = BlurPyramid::sceneScale;
    return {(frame_.width + scale - 1) / scale, (frame_.height + scale - 1) / scale};
}

/// A cover extends beyond its window by one pixel on each side. The backdrop ignores that margin:
/// the window's own edge is extended, so the windows below need not be kept for it.
PixelRect X11OverlayPanel::neededArea() const {
    if (!isAttached_) return frame_;
    return {frame_.x + 1, frame_.y + 1, frame_.width - 2, frame_.height - 2};
}

bool X11OverlayPanel::fillsScene(const SourceWindow& source) const {
    return !source.hasAlpha && source.frame.contains(neededArea());
}

void X11OverlayPanel::drawBackground() {
    auto& server = RenderServer::shared();
    constexpr int scale = BlurPyramid::sceneScale;
    const PixelRect all{0, 0, scene_.size.width, scene_.size.height};
    if (const auto wallpaper = SceneSources::shared().wallpaper()) {
        const std::uint32_t repeat = XCB_RENDER_REPEAT_NORMAL;
        xcb_render_change_picture(connection(), wallpaper.id(), XCB_RENDER_CP_REPEAT, &repeat);
        server.drawScaled(XCB_RENDER_PICT_OP_SRC, wallpaper.id(), scene_.picture.id(), scale, scale,
                          frame_.x, frame_.y, all);
    } else if (capture_.picture) {
        // A root window without a wallpaper cannot be read while it is covered; the earlier capture
        // is used.
        server.drawScaled(XCB_RENDER_PICT_OP_SRC, capture_.picture.id(), scene_.picture.id(),
                          static_cast<double>(capture_.size.width) / scene_.size.width,
                          static_cast<double>(capture_.size.height) / scene_.size.height, 0, 0,
                          all);
    } else {
        Color opaque = tint_;
        opaque.alpha = 1;
        server.fill(XCB_RENDER_PICT_OP_SRC, scene_.picture.id(), opaque, all);
    }
}

void X11OverlayPanel::drawSources(const Canvas& canvas) {
    constexpr int scale = BlurPyramid::sceneScale;
    const PixelRect all{0, 0, canvas.size.width, canvas.size.height};
    for (const auto& source : sources_) {
        // The window's position in the scene, and the scene pixels that it touches.
        const double left = static_cast<double>(source->frame.x - frame_.x) / scale;
        const double top = static_cast<double>(source->frame.y - frame_.y) / scale;
        const int x = static_cast<int>(std::floor(left));
        const int y = static_cast<int>(std::floor(top));
        const int right =
            static_cast<int>(std::ceil(left + static_cast<double>(source->frame.width) / scale));
        const int bottom =
            static_cast<int>(std::ceil(top + static_cast<double>(source->frame.height) / scale));
        const PixelRect to =
            fillsScene(*source) ? all : PixelRect{x, y, right - x, bottom - y}.intersected(all);
        if (to.isEmpty()) continue;
        RenderServer::shared().drawScaled(
            source->hasAlpha ? XCB_RENDER_PICT_OP_OVER : XCB_RENDER_PICT_OP_SRC,
            source->picture.id(), canvas.picture.id(), scale, scale, (to.x - left) * scale,
            (to.y - top) * scale, to);
    }
}

void X11OverlayPanel::refreshBackdrop() {
    if (!isBlurring()) return;
    const Canvas& scene = scene_.picture ? scene_ : capture_;
    // The radius is in points, as is the size of the text that it has to hide.
    const double scale = OrvelSystem::QtScreens::scaleAt(
        {frame_.x + frame_.width / 2.0, frame_.y + frame_.height / 2.0});
    const Canvas& blurred = pyramid_.blur(scene, radius_ * scale);
    blurred_ = &blurred;
    // A flat colour looks the same when scaled up, so it is applied where there are fewer pixels.
    RenderServer::shared().fill(XCB_RENDER_PICT_OP_OVER, blurred.picture.id(),
                                faded(tint_, tintOpacity_),
                                {0, 0, blurred.size.width, blurred.size.height});
}

void X11OverlayPanel::paint(const PixelRect& area) {
    const PixelRect visible = area.intersected(bounds());
    if (visible.isEmpty()) return;
    if (!target_) {
        // A server without Render can still hide what is behind the panel.
        const auto* const fill = std::get_if<Fill>(&backdrop_);
        const Color color = fill != nullptr ? fill->color : tint_;
        const auto byte = [](double value) {
            return static_cast<std::uint32_t>(std::lround(value * 255));
        };
        const std::uint32_t pixel =
            byte(color.red) << 16U | byte(color.green) << 8U | byte(color.blue);
        xcb_change_window_attributes(connection(), window_, XCB_CW_BACK_PIXEL, &pixel);
        xcb_clear_area(connection(), 0, window_, 0, 0, 0, 0);
        return;
    }
    // When the roof is released, the window keeps what the screen shows there and gets an Expose
    // event.
    if (!roof_ || !Roof::shared().isHeld())
        drawPanel(target_.id(), 0, 0, visible);
    else if (const auto roof = Roof::shared().pictureFor(window_); roof != 0)
        drawPanel(roof, -frame_.x, -frame_.y, visible);
}

/// Draws so that the content is never missing for a moment. `originX`, `originY` is the point of
/// the panel at the origin of `target`; `visible` is relative to the panel.
void X11OverlayPanel::drawPanel(xcb_render_picture_t target, int originX, int originY,
                                const PixelRect& visible) {
    const PixelRect content =
        host_ && host_->picture() != 0 ? host_->frame().intersected(visible) : PixelRect{};
    if (content.isEmpty()) {
        drawLayers(target, originX, originY, visible);
        return;
    }
    const int right = content.x + content.width;
    const int bottom = content.y + content.height;
    const PixelRect around[4] = {
        {visible.x, visible.y, visible.width, content.y - visible.y},
        {visible.x, content.y, content.x - visible.x, content.height},
        {right, content.y, visible.x + visible.width - right, content.height},
        {visible.x, bottom, visible.width, visible.y + visible.height - bottom}};
    for (const auto& strip : around) {
        if (!strip.isEmpty()) drawLayers(target, originX, originY, strip);
    }
    const PixelSize size{host_->frame().width, host_->frame().height};
    auto& server = RenderServer::shared();
    if (buffer_.size != size) buffer_ = server.makeCanvas(size, false);
    drawLayers(buffer_.picture.id(), host_->frame().x, host_->frame().y, content);
    xcb_render_composite(
        connection(), XCB_RENDER_PICT_OP_SRC, buffer_.picture.id(), XCB_RENDER_PICTURE_NONE, target,
        static_cast<std::int16_t>(content.x - host_->frame().x),
        static_cast<std::int16_t>(content.y - host_->frame().y), 0, 0,
        static_cast<std::int16_t>(content.x - originX),
        static_cast<std::int16_t>(content.y - originY), static_cast<std::uint16_t>(content.width),
        static_cast<std::uint16_t>(content.height));
}

// `area` is relative to the panel; the other parameters are as in `drawPanel`.
void X11OverlayPanel::drawLayers(xcb_render_picture_t target, int originX, int originY,
                                 const PixelRect& area) {
    auto& server = RenderServer::shared();
    const PixelRect to{area.x - originX, area.y - originY, area.width, area.height};
    if (isBlurring() && blurred_ != nullptr) {
        constexpr double scale = 1.0 / BlurPyramid::sceneScale;
        server.drawScaled(XCB_RENDER_PICT_OP_SRC, blurred_->picture.id(), target, scale, scale,
                          area.x * scale, area.y * scale, to);
    } else {
        // When in doubt, hide: a bare X server has no effect of its own to blur with.
        const auto* const fill = std::get_if<Fill>(&backdrop_);
        Color opaque = fill != nullptr ? fill->color : tint_;
        opaque.alpha = 1;
        server.fill(XCB_RENDER_PICT_OP_SRC, target, opaque, to);
        server.fill(XCB_RENDER_PICT_OP_OVER, target, faded(tint_, tintOpacity_), to);
    }

    const auto composite = [&](xcb_render_picture_t source, double opacity, int x, int y,
                               const PixelRect& at) {
        if (opacity <= 0) return;
        const auto mask = opacity < 1 ? server.makeSolid({0, 0, 0, opacity}) : ServerPicture();
        xcb_render_composite(connection(), XCB_RENDER_PICT_OP_OVER, source, mask.id(), target,
                             static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0, 0,
                             static_cast<std::int16_t>(at.x), static_cast<std::int16_t>(at.y),
                             static_cast<std::uint16_t>(at.width),
                             static_cast<std::uint16_t>(at.height));
    };
    composite(server.grain(), grainOpacity_, area.x, area.y, to);
    if (!host_ || host_->picture() == 0) return;
    const PixelRect content = host_->frame().intersected(area);
    if (content.isEmpty()) return;
    composite(host_->picture(), contentOpacity_, content.x - host_->frame().x,
              content.y - host_->frame().y,
              {content.x - originX, content.y - originY, content.width, content.height});
}

void X11OverlayPanel::handle(const xcb_generic_event_t& event) {
    if (repair(event) || !isVisible_) return;
    if (host_ && host_->takeDamage(event)) {
        paint(host_->frame());
        X11::shared().flush();
        return;
    }
    switch (event.response_type) {
        case 0: {
            const auto& error = reinterpret_cast<const xcb_generic_error_t&>(event);
            if (focusRequest_ != 0 && error.sequence == static_cast<std::uint16_t>(focusRequest_) &&
                error.major_code == XCB_SET_INPUT_FOCUS)
                setKey(false);
            break;
        }
        case XCB_EXPOSE: {
            const auto& expose = reinterpret_cast<const xcb_expose_event_t&>(event);
            if (expose.window != window_) break;
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
            if (press.event == window_ && isPrimary && click) click();
            break;
        }
        case XCB_KEY_PRESS: {
            const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(event);
            if (press.event == window_ && press.detail == escapeKey) cancel();
            break;
        }
        case XCB_FOCUS_IN:
            handleFocus(reinterpret_cast<const xcb_focus_in_event_t&>(event), true);
            break;
        case XCB_FOCUS_OUT:
            handleFocus(reinterpret_cast<const xcb_focus_in_event_t&>(event), false);
            break;
        default:
            break;
    }
}

void X11OverlayPanel::handleFocus(const xcb_focus_in_event_t& event, bool in) {
    if (!owns(event.event)) return;
    // A grab redirects keys temporarily without moving the focus, and focus that follows the
    // pointer does not count.
    if (event.mode == XCB_NOTIFY_MODE_GRAB || event.mode == XCB_NOTIFY_MODE_UNGRAB) return;
    if (event.detail == XCB_NOTIFY_DETAIL_POINTER || event.detail == XCB_NOTIFY_DETAIL_POINTER_ROOT)
        return;
    // The focus moved within the panel.
    if (event.detail == XCB_NOTIFY_DETAIL_INFERIOR) return;
    if (!in && event.event != window_ && event.detail == XCB_NOTIFY_DETAIL_ANCESTOR) return;
    // This loss has already been answered by requesting the focus.
    if (!in && retake_.isActive()) return;
    setKey(in);
}

}  // namespace OrvelBlur
