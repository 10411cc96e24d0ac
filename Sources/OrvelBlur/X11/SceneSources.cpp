#include "OrvelBlur/X11/SceneSources.h"

#include <algorithm>
#include <utility>

#include <xcb/composite.h>

#include "OrvelBlur/X11/PanelStack.h"

namespace OrvelBlur {

using OrvelSystem::X11;
using OrvelSystem::XReply;

namespace {

// At this blur nobody can see the difference to 60 pictures a second, which would cost CPU time.
constexpr int updateMilliseconds = 66;
// For windows that are not blurred: each frame of a display.
constexpr int sharpMilliseconds = 16;

constexpr PixelRect everywhere{-32768, -32768, 65535, 65535};

constexpr std::string_view wallpaperProperty = "_XROOTPMAP_ID";

PixelRect toPixels(const OrvelCore::Rect& rect) {
    return {static_cast<int>(rect.x), static_cast<int>(rect.y), static_cast<int>(rect.width),
            static_cast<int>(rect.height)};
}

xcb_connection_t* connection() {
    return X11::shared().connection();
}

}  // namespace

SourceWindow::SourceWindow(xcb_window_t source, xcb_render_pictformat_t format)
    : window(source), hasAlpha(RenderServer::shared().hasAlpha(format)), format_(format) {
    xcb_composite_redirect_window(connection(), window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    const std::uint32_t watch = xcb_generate_id(connection());
    xcb_damage_create(connection(), watch, window, XCB_DAMAGE_REPORT_LEVEL_BOUNDING_BOX);
    damage = ServerDamage(watch);
}

void SourceWindow::giveBack() {
    if (!std::exchange(isKept_, false)) return;
    damage.reset();
    xcb_composite_unredirect_window(connection(), window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
}

void SourceWindow::renew(const PixelRect& at) {
    frame = at;
    const std::uint32_t name = xcb_generate_id(connection());
    xcb_composite_name_window_pixmap(connection(), window, name);
    pixmap = ServerPixmap(name);
    picture = RenderServer::shared().makePicture(name, format_, false);
}

SceneSources& SceneSources::shared() {
    static SceneSources sources;
    return sources;
}

SceneSources::SceneSources() : connection_(nullptr, xcb_disconnect) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, [this] { update(); });
}

OrvelCore::Subscription SceneSources::subscribe(Changed changed) {
    auto owned = std::shared_ptr<Changed>(new Changed(std::move(changed)), [this](auto* listener) {
        delete listener;
        if (listeners_.isEmpty()) stop();
    });
    listeners_.add(owned);
    start();
    return owned;
}

void SceneSources::setPaused(bool paused) {
    isPaused_ = paused;
    if (paused)
        stop();
    else
        start();
}

void SceneSources::start() {
    if (!isWanted()) return;
    // Hiding the screen must not wait for the windows, so they are read at the first use.
    stacked_ = {everywhere};
    schedule(updateMilliseconds);
}

bool SceneSources::isWanted() const {
    return !isPaused_ && !listeners_.isEmpty();
}

void SceneSources::ensureRunning() {
    if (isRunning_ || !isWanted()) return;
    if (!connection_) {
        connection_.reset(xcb_connect(nullptr, nullptr));
        windows_.server.root = X11::shared().root();
        notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_.get()),
                                                      QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { readEvents(); });
    }
    isRunning_ = true;
    damage_ = X11::shared().onEvent([this](const auto& event) { handleDamage(event); });
    readTree();
}

void SceneSources::stop() {
    timer_.stop();
    stacked_.clear();
    drawn_.clear();
    // A paused panel that is moved reads it as well.
    wallpaper_.reset();
    if (!std::exchange(isRunning_, false)) return;
    damage_.reset();
    constexpr std::uint32_t none = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(connection_.get(), windows_.server.root, XCB_CW_EVENT_MASK, &none);
    xcb_flush(connection_.get());
    for (const auto& weak : std::exchange(sources_, {})) {
        if (const auto source = weak.lock()) source->giveBack();
    }
    windows_.setTree({}, 0);
    details_.clear();
    damaged_.clear();
    X11::shared().flush();
}

void SceneSources::readTree() {
    auto* const c = connection_.get();
    const auto root = windows_.server.root;
    constexpr std::uint32_t events =
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(c, root, XCB_CW_EVENT_MASK, &events);
    const auto cookie = xcb_query_tree(c, root);
    const XReply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, cookie, nullptr));
    if (!tree) return;
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    windows_.setTree({children, children + xcb_query_tree_children_length(tree.get())},
                     cookie.sequence);
    resolve();
}

/// Asks for what events do not tell about new windows.
void SceneSources::resolve() {
    auto* const c = connection_.get();
    struct Question {
        xcb_window_t window;
        xcb_get_window_attributes_cookie_t attributes;
        xcb_get_geometry_cookie_t geometry;
    };
    // All requests are sent before the first reply is awaited.
    std::vector<Question> questions;
    for (const auto window : windows_.takeUnresolved())
        questions.push_back(
            {window, xcb_get_window_attributes(c, window), xcb_get_geometry(c, window)});
    for (const auto& question : questions) {
        const XReply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(c, question.attributes, nullptr));
        const XReply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(c, question.geometry, nullptr));
        auto* const child = windows_.find(question.window);
        if (child == nullptr) continue;
        // The window no longer exists; the server will report that.
        child->isMapped = attributes && geometry;
        if (!child->isMapped) continue;
        child->isMapped = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        child->isInputOnly = attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY;
        child->frame = OrvelSystem::MirrorState::frameOf(*geometry);
        child->isResolved = true;
        if (!child->isInputOnly)
            details_[question.window].format = RenderServer::shared().formatOf(attributes->visual);
        if (isDrawn(question.window)) stacked_.push_back(toPixels(child->frame));
    }
}

bool SceneSources::isDrawn(xcb_window_t window) {
    const auto* const child = windows_.find(window);
    if (child == nullptr || !child->isMapped || !child->isResolved) return false;
    const auto details = details_.find(window);
    return details != details_.end() && details->second.format;
}

/// Notes where the picture may have changed: a window changes it in its old and its new place.
void SceneSources::handle(const xcb_generic_event_t& event) {
    if (!isRunning_) return;
    xcb_window_t window = XCB_NONE;
    const auto type = event.response_type;
    switch (type) {
        case XCB_MAP_NOTIFY:
        case XCB_UNMAP_NOTIFY:
        case XCB_DESTROY_NOTIFY:
        case XCB_REPARENT_NOTIFY:
        case XCB_CIRCULATE_NOTIFY:
        case XCB_GRAVITY_NOTIFY:
        case XCB_CONFIGURE_NOTIFY:
            // All of these events store the window that they are about at the same offset.
            window = reinterpret_cast<const xcb_map_notify_event_t&>(event).window;
            break;
        case XCB_PROPERTY_NOTIFY:
            if (reinterpret_cast<const xcb_property_notify_event_t&>(event).atom ==
                X11::shared().atom(wallpaperProperty)) {
                wallpaper_.reset();
                invalidate(everywhere);
            }
            return;
        default:
            break;
    }
    if (window == XCB_NONE) return windows_.handle(event);
    const auto note = [&] {
        if (isDrawn(window)) stacked_.push_back(toPixels(windows_.find(window)->frame));
    };
    note();
    const auto* const before = windows_.find(window);
    const auto oldFrame = before != nullptr ? before->frame : OrvelCore::Rect{};
    windows_.handle(event);
    const auto* const child = windows_.find(window);
    if (child == nullptr) {
        details_.erase(window);
    } else if (const auto details = details_.find(window); details != details_.end()) {
        const bool isResized =
            child->frame.width != oldFrame.width || child->frame.height != oldFrame.height;
        details->second.hasNewPixmap |= type == XCB_MAP_NOTIFY || isResized;
    }
    note();
}

void SceneSources::handleDamage(const xcb_generic_event_t& event) {
    if (event.response_type != RenderServer::shared().damageEvent() + XCB_DAMAGE_NOTIFY) return;
    const auto& notify = reinterpret_cast<const xcb_damage_notify_event_t&>(event);
    const auto details = details_.find(notify.drawable);
    const auto source = details == details_.end() ? nullptr : details->second.source.lock();
    if (!source) return;
    // Relative to the inside of the window, whose place on the screen `geometry` is.
    const auto& area = notify.area;
    damaged_.push_back(
        {source,
         {notify.geometry.x + area.x, notify.geometry.y + area.y, area.width, area.height}});
    schedule(source->isSharp ? sharpMilliseconds : updateMilliseconds);
}

void SceneSources::schedule(int milliseconds) {
    if (!timer_.isActive() || timer_.remainingTime() > milliseconds) timer_.start(milliseconds);
}

void SceneSources::readEvents() {
    do {
        // Waiting for replies also reads events, and the socket does not report those again.
        resolve();
        while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())})
            handle(*event);
    } while (windows_.hasUnresolved());
    if (xcb_connection_has_error(connection_.get()) != 0) notifier_->setEnabled(false);
    if (!stacked_.empty()) schedule(updateMilliseconds);
}

/// Makes the sources agree with what the server has reported.
void SceneSources::renewSources() {
    std::erase_if(sources_, [](const auto& source) { return source.expired(); });
    for (const auto& weak : sources_) {
        const auto source = weak.lock();
        const auto* const child = windows_.find(source->window);
        const auto details = details_.find(source->window);
        if (child == nullptr || !child->isMapped || details == details_.end()) continue;
        const PixelRect frame = toPixels(child->frame);
        if (std::exchange(details->second.hasNewPixmap, false))
            source->renew(frame);
        else
            source->move(frame);
    }
}

void SceneSources::refresh() {
    ensureRunning();
    if (!isRunning_) return;
    // What this program has requested must have been carried out before the events are read.
    const auto carryOut = [](xcb_connection_t* on) {
        const XReply<xcb_get_input_focus_reply_t> done(
            xcb_get_input_focus_reply(on, xcb_get_input_focus(on), nullptr));
    };
    carryOut(connection());
    carryOut(connection_.get());
    readEvents();
    renewSources();
}

void SceneSources::catchUp() {
    refresh();
    if (isRunning_ && !stacked_.empty()) report({.stacked = std::exchange(stacked_, {})});
}

void SceneSources::update() {
    ensureRunning();
    if (!isRunning_) return;
    readEvents();
    renewSources();
    timer_.stop();
    Change change{
        .stacked = std::exchange(stacked_, {}), .drawn = std::exchange(drawn_, {}), .redrawn = {}};
    for (const auto& [weak, area] : std::exchange(damaged_, {})) {
        auto source = weak.lock();
        if (!source) continue;
        // Before the window is drawn, so that nothing is lost that it shows later.
        xcb_damage_subtract(connection(), source->damage.id(), XCB_NONE, XCB_NONE);
        change.redrawn.push_back({std::move(source), area});
    }
    report(change);
}

void SceneSources::report(const Change& change) {
    if (!change.stacked.empty() || !change.drawn.empty() || !change.redrawn.empty())
        listeners_.forEach([&](const Changed& changed) { changed(change); });
    X11::shared().flush();
}

void SceneSources::invalidate(const PixelRect& area) {
    if (!isWanted()) return;
    drawn_.push_back(area);
    schedule(updateMilliseconds);
}

/// Call for a window that can be drawn.
std::shared_ptr<SourceWindow> SceneSources::sourceOf(xcb_window_t window, const PixelRect& frame) {
    auto& details = details_[window];
    auto source = details.source.lock();
    if (source) return source;
    source = std::make_shared<SourceWindow>(window, *details.format);
    source->renew(frame);
    details.source = source;
    details.hasNewPixmap = false;
    sources_.push_back(source);
    return source;
}

SceneSources::Sources SceneSources::find(const std::vector<xcb_window_t>& windows,
                                         const PixelRect& area) {
    Sources found;
    for (const auto& child : windows_.children()) {
        const PixelRect frame = toPixels(child.frame);
        if (std::ranges::find(windows, child.window) == windows.end() || !isDrawn(child.window) ||
            frame.intersected(area).isEmpty() || PanelStack::shared().owns(child.window))
            continue;
        auto source = sourceOf(child.window, frame);
        source->isSharp = true;
        found.push_back(std::move(source));
    }
    return found;
}

SceneSources::Sources SceneSources::below(xcb_window_t panel, const PixelRect& area) {
    // A panel may be moved before the first update.
    ensureRunning();
    const auto top = windows_.placeOf(panel);
    Sources windows;
    std::vector<PixelRect> hiding;
    for (auto at = std::make_reverse_iterator(top); at != windows_.children().rend(); ++at) {
        if (!at->isMapped || !at->isResolved) continue;
        const auto details = details_.find(at->window);
        if (details == details_.end() || !details->second.format ||
            PanelStack::shared().isLeftOutOf(panel, at->window))
            continue;
        const PixelRect frame = toPixels(at->frame);
        const PixelRect visible = frame.intersected(area);
        if (visible.isEmpty()) continue;
        const auto hides = [&visible](const PixelRect& other) { return other.contains(visible); };
        if (std::ranges::any_of(hiding, hides)) continue;
        auto source = sourceOf(at->window, frame);
        if (!source->hasAlpha) hiding.push_back(source->frame);
        windows.push_back(std::move(source));
    }
    std::ranges::reverse(windows);
    return windows;
}

xcb_render_picture_t SceneSources::wallpaper() {
    if (wallpaper_) return wallpaper_->id();
    wallpaper_.emplace();
    const auto pixmap = X11::shared().property32(X11::shared().root(), wallpaperProperty, 1);
    if (pixmap.empty() || pixmap.front() == 0) return XCB_NONE;
    const XReply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
        connection(), xcb_get_geometry(connection(), pixmap.front()), nullptr));
    if (!geometry || geometry->depth != X11::shared().screen()->root_depth) return XCB_NONE;
    auto& server = RenderServer::shared();
    wallpaper_ = server.makePicture(pixmap.front(), server.rootFormat(), false);
    const std::uint32_t repeat = XCB_RENDER_REPEAT_NORMAL;
    xcb_render_change_picture(connection(), wallpaper_->id(), XCB_RENDER_CP_REPEAT, &repeat);
    return wallpaper_->id();
}

}  // namespace OrvelBlur
