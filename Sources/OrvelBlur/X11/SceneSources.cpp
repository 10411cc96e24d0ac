#include "OrvelBlur/X11/SceneSources.h"

#include <algorithm>
#include <unordered_map>
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

xcb_connection_t* connection() {
    return X11::shared().connection();
}

}  // namespace

SourceWindow::SourceWindow(xcb_window_t source, xcb_render_pictformat_t format)
    : window(source), hasAlpha(RenderServer::shared().hasAlpha(format)), format_(format) {
    xcb_composite_redirect_window(connection(), window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    const std::uint32_t watch = xcb_generate_id(connection());
    xcb_damage_create(connection(), watch, window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
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

SceneSources::SceneSources() {
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
    if (isPaused_ || listeners_.isEmpty()) return;
    if (!events_) {
        X11::shared().selectOnRoot(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        events_ = X11::shared().onEvent([this](const auto& event) { handle(event); });
    }
    structureChanged_ = true;
    changed_ = {everywhere};
    schedule(updateMilliseconds);
}

void SceneSources::stop() {
    timer_.stop();
    events_.reset();
    for (const auto& entry : stack_) {
        if (const auto source = entry.source.lock()) source->giveBack();
    }
    stack_.clear();
    damaged_.clear();
    changed_.clear();
    X11::shared().flush();
}

void SceneSources::handle(const xcb_generic_event_t& event) {
    const auto type = event.response_type;
    if (type == RenderServer::shared().damageEvent() + XCB_DAMAGE_NOTIFY) {
        const auto& notify = reinterpret_cast<const xcb_damage_notify_event_t&>(event);
        const auto entry = std::ranges::find(stack_, notify.drawable, &Entry::window);
        const auto source = entry == stack_.end() ? nullptr : entry->source.lock();
        if (!source) return;
        damaged_.push_back(source);
        schedule(source->isSharp ? sharpMilliseconds : updateMilliseconds);
        return;
    }
    switch (type) {
        case XCB_MAP_NOTIFY:
        case XCB_UNMAP_NOTIFY:
        case XCB_DESTROY_NOTIFY:
        case XCB_REPARENT_NOTIFY:
        case XCB_CIRCULATE_NOTIFY:
            structureChanged_ = true;
            schedule(updateMilliseconds);
            break;
        case XCB_CONFIGURE_NOTIFY: {
            const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            // Any window's event counts: Qt passes on only the last of several in a row.
            if (configure.event != X11::shared().root()) break;
            structureChanged_ = true;
            schedule(updateMilliseconds);
            break;
        }
        default:
            break;
    }
}

void SceneSources::schedule(int milliseconds) {
    if (!timer_.isActive() || timer_.remainingTime() > milliseconds) timer_.start(milliseconds);
}

void SceneSources::update() {
    if (structureChanged_) refresh();
    const auto areas = std::exchange(changed_, {});
    Sources redrawn;
    for (const auto& weak : std::exchange(damaged_, {})) {
        auto source = weak.lock();
        if (!source) continue;
        xcb_damage_subtract(connection(), source->damage.id(), XCB_NONE, XCB_NONE);
        redrawn.push_back(std::move(source));
    }
    if (!areas.empty() || !redrawn.empty()) {
        listeners_.forEach([&](const Changed& changed) { changed(areas, redrawn); });
    }
    X11::shared().flush();
}

void SceneSources::refresh() {
    if (!events_) return;
    structureChanged_ = false;
    auto windows = readWindows();
    const auto areas = changes(stack_, windows);
    changed_.insert(changed_.end(), areas.begin(), areas.end());
    stack_ = std::move(windows);
}

void SceneSources::invalidate(const PixelRect& area) {
    if (!events_) return;
    changed_.push_back(area);
    schedule(updateMilliseconds);
}

std::vector<SceneSources::Entry> SceneSources::readWindows() const {
    auto* const c = connection();
    const XReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(c, xcb_query_tree(c, X11::shared().root()), nullptr));
    if (!tree) return {};
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    const std::vector<xcb_window_t> windows(children,
                                            children + xcb_query_tree_children_length(tree.get()));
    // All requests are sent before the first reply is awaited.
    std::vector<std::pair<xcb_get_window_attributes_cookie_t, xcb_get_geometry_cookie_t>> asked;
    asked.reserve(windows.size());
    for (const xcb_window_t window : windows)
        asked.emplace_back(xcb_get_window_attributes(c, window), xcb_get_geometry(c, window));

    std::vector<Entry> stack;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        const XReply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(c, asked[i].first, nullptr));
        const XReply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(c, asked[i].second, nullptr));
        if (!attributes || !geometry) continue;
        auto& entry = stack.emplace_back(Entry{.window = windows[i]});
        if (attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        const int border = 2 * geometry->border_width;
        entry.frame = {geometry->x, geometry->y, geometry->width + border,
                       geometry->height + border};
        entry.format = RenderServer::shared().formatOf(attributes->visual);
        const auto known = std::ranges::find(stack_, windows[i], &Entry::window);
        if (known == stack_.end()) continue;
        entry.source = known->source;
        if (const auto source = entry.source.lock()) source->renew(entry.frame);
    }
    return stack;
}

/// The areas that may look different to a panel, which shows only the windows below it.
std::vector<PixelRect> SceneSources::changes(const std::vector<Entry>& before,
                                             const std::vector<Entry>& after) {
    std::vector<PixelRect> areas;
    std::unordered_map<xcb_window_t, const Entry*> known;
    for (const auto& entry : before) known.emplace(entry.window, &entry);
    std::vector<xcb_window_t> order;
    for (const auto& entry : after) {
        const auto found = known.find(entry.window);
        if (found == known.end()) {
            if (entry.format) areas.push_back(entry.frame);
            continue;
        }
        order.push_back(entry.window);
        const auto& old = *found->second;
        known.erase(found);
        if (old.frame == entry.frame && old.format == entry.format) continue;
        if (old.format) areas.push_back(old.frame);
        if (entry.format) areas.push_back(entry.frame);
    }
    // The remaining entries are windows that have gone.
    for (const auto& [window, entry] : known) {
        if (entry->format) areas.push_back(entry->frame);
    }
    auto next = order.begin();
    for (const auto& entry : before) {
        if (known.contains(entry.window)) continue;
        if (entry.window != *next++) return {everywhere};
    }
    return areas;
}

/// Call for an entry that can be drawn.
std::shared_ptr<SourceWindow> SceneSources::sourceOf(Entry& entry) {
    auto source = entry.source.lock();
    if (source) return source;
    source = std::make_shared<SourceWindow>(entry.window, *entry.format);
    source->renew(entry.frame);
    entry.source = source;
    return source;
}

SceneSources::Sources SceneSources::find(const std::vector<xcb_window_t>& windows,
                                         const PixelRect& area) {
    Sources found;
    for (auto& entry : stack_) {
        if (!entry.format || entry.frame.intersected(area).isEmpty() ||
            std::ranges::find(windows, entry.window) == windows.end() ||
            PanelStack::shared().owns(entry.window))
            continue;
        auto source = sourceOf(entry);
        source->isSharp = true;
        found.push_back(std::move(source));
    }
    return found;
}

SceneSources::Sources SceneSources::below(xcb_window_t panel, const PixelRect& area) {
    const auto top = std::ranges::find(stack_, panel, &Entry::window);
    Sources windows;
    std::vector<PixelRect> hiding;
    for (auto at = std::make_reverse_iterator(top); at != stack_.rend(); ++at) {
        if (!at->format || PanelStack::shared().isLeftOutOf(panel, at->window)) continue;
        const PixelRect visible = at->frame.intersected(area);
        if (visible.isEmpty()) continue;
        const auto hides = [&visible](const PixelRect& frame) { return frame.contains(visible); };
        if (std::ranges::any_of(hiding, hides)) continue;
        auto source = sourceOf(*at);
        if (!source->hasAlpha) hiding.push_back(source->frame);
        windows.push_back(std::move(source));
    }
    std::ranges::reverse(windows);
    return windows;
}

ServerPicture SceneSources::wallpaper() const {
    const auto pixmap = X11::shared().property32(X11::shared().root(), "_XROOTPMAP_ID", 1);
    if (pixmap.empty() || pixmap.front() == 0) return {};
    const XReply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
        connection(), xcb_get_geometry(connection(), pixmap.front()), nullptr));
    if (!geometry || geometry->depth != X11::shared().screen()->root_depth) return {};
    auto& server = RenderServer::shared();
    return server.makePicture(pixmap.front(), server.rootFormat(), false);
}

}  // namespace OrvelBlur
