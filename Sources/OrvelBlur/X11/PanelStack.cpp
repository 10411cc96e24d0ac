#include "OrvelBlur/X11/PanelStack.h"

#include <algorithm>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/X11/SceneSources.h"
#include "OrvelSystem/WindowServer.h"
#include "OrvelSystem/X11/LockerWindow.h"

namespace OrvelBlur {

using OrvelSystem::X11;

namespace {

// From the level of menus up, a panel floats above all windows of other programs.
constexpr int floatingLevel = WindowLevel::toast;
// The delay limits the cost while windows move or other programs also insist on being on top.
constexpr int cornersMilliseconds = 250;

/// A `sibling` of `XCB_NONE` means all windows.
void stack(xcb_window_t window, xcb_stack_mode_t mode, xcb_window_t sibling) {
    std::vector<std::uint32_t> values;
    std::uint16_t mask = XCB_CONFIG_WINDOW_STACK_MODE;
    if (sibling != XCB_NONE) {
        mask |= XCB_CONFIG_WINDOW_SIBLING;
        values.push_back(sibling);
    }
    values.push_back(mode);
    xcb_configure_window(X11::shared().connection(), window, mask, values.data());
}

}  // namespace

PanelStack& PanelStack::shared() {
    static PanelStack stack;
    return stack;
}

PanelStack::PanelStack() {
    corners_.setSingleShot(true);
    corners_.setInterval(cornersMilliseconds);
    QObject::connect(&corners_, &QTimer::timeout, [this] {
        if (!isYielding_) raise(WindowLevel::hotCorner);
    });
}

void PanelStack::add(xcb_window_t window, int level, bool hides) {
    panels_[window] = {.level = level, .hides = hides};
}

void PanelStack::remove(xcb_window_t window) {
    panels_.erase(window);
    watch();
}

void PanelStack::orderFront(xcb_window_t window) {
    const auto panel = panels_.find(window);
    if (panel == panels_.end()) return;
    panel->second.order = nextOrder_++;
    if (panel->second.level < floatingLevel)
        return orderFrontOfWindows(window, panel->second.level);
    const auto order = topDown();
    const auto self = std::find(order.begin(), order.end(), window);
    // Never above a higher level, not even until that level is raised again.
    if (self != order.begin())
        stack(window, XCB_STACK_MODE_BELOW, *std::prev(self));
    else if (isYielding_ && order.size() > 1)
        stack(window, XCB_STACK_MODE_ABOVE, *std::next(self));
    else
        stack(window, XCB_STACK_MODE_ABOVE, XCB_NONE);
    watch();
}

void PanelStack::orderFrontOfWindows(xcb_window_t window, int level) {
    const auto windows = OrvelSystem::WindowServer::onScreenWindows();
    const auto top =
        std::ranges::find_if(windows, [level](const auto& other) { return other.layer <= level; });
    const bool isKnown = top != windows.end();
    const xcb_window_t sibling = isKnown ? static_cast<xcb_window_t>(top->number) : XCB_NONE;
    if (sibling == window) return;
    // Put it below the floating panels first: the list may name a window that has just gone, and
    // then the panel stays where this puts it.
    if (const auto floating = topDown(); !floating.empty())
        stack(window, XCB_STACK_MODE_BELOW, floating.back());
    else if (!isKnown)
        stack(window, XCB_STACK_MODE_ABOVE, XCB_NONE);
    if (isKnown) stack(window, XCB_STACK_MODE_ABOVE, sibling);
}

void PanelStack::orderAbove(xcb_window_t window, xcb_window_t sibling) {
    if (const auto panel = panels_.find(window); panel != panels_.end())
        panel->second.follows = owns(sibling) ? sibling : XCB_NONE;
    stack(window, XCB_STACK_MODE_ABOVE, sibling);
    takeFollowersAlong(window);
}

void PanelStack::orderBelow(xcb_window_t window, xcb_window_t sibling) {
    stack(window, XCB_STACK_MODE_BELOW, sibling);
    takeFollowersAlong(window);
}

void PanelStack::takeFollowersAlong(xcb_window_t window) {
    for (const auto& [follower, panel] : panels_) {
        if (panel.follows == window) stack(follower, XCB_STACK_MODE_ABOVE, window);
    }
}

void PanelStack::orderOut(xcb_window_t window) {
    const auto panel = panels_.find(window);
    if (panel != panels_.end()) panel->second.order = 0;
    watch();
}

void PanelStack::raise() {
    raise(floatingLevel);
}

void PanelStack::raise(int fromLevel) {
    xcb_window_t above = XCB_NONE;
    for (const xcb_window_t window : topDown()) {
        if (panels_.at(window).level < fromLevel) break;
        stack(window, above == XCB_NONE ? XCB_STACK_MODE_ABOVE : XCB_STACK_MODE_BELOW, above);
        above = window;
    }
    X11::shared().flush();
}

std::vector<xcb_window_t> PanelStack::topDown() const {
    std::vector<std::pair<Panel, xcb_window_t>> floating;
    for (const auto& [window, panel] : panels_) {
        if (isFloating(window)) floating.emplace_back(panel, window);
    }
    std::sort(floating.begin(), floating.end(), [](const auto& a, const auto& b) {
        return std::pair(a.first.level, a.first.order) > std::pair(b.first.level, b.first.order);
    });
    std::vector<xcb_window_t> windows;
    windows.reserve(floating.size());
    for (const auto& [panel, window] : floating) windows.push_back(window);
    return windows;
}

void PanelStack::setYielding(bool yielding) {
    if (yielding == isYielding_) return;
    isYielding_ = yielding;
    SceneSources::shared().setPaused(yielding);
    if (!yielding) raise();
}

bool PanelStack::isLeftOutOf(xcb_window_t panel, xcb_window_t window) const {
    const auto other = panels_.find(window);
    if (other == panels_.end() || other->second.level < floatingLevel) return false;
    const auto own = panels_.find(panel);
    return !other->second.hides || own == panels_.end() || other->second.level >= own->second.level;
}

bool PanelStack::isAbove(xcb_window_t window, xcb_window_t other) const {
    const auto order = topDown();
    const auto at = std::ranges::find(order, window);
    return at != order.end() && std::find(std::next(at), order.end(), other) != order.end();
}

bool PanelStack::isFloating(xcb_window_t window) const {
    const auto panel = panels_.find(window);
    return panel != panels_.end() && panel->second.order != 0 &&
           panel->second.level >= floatingLevel;
}

bool PanelStack::shows(int level) const {
    return std::ranges::any_of(panels_, [level](const auto& entry) {
        return entry.second.order != 0 && entry.second.level >= level;
    });
}

void PanelStack::watch() {
    if (!shows(WindowLevel::hotCorner)) {
        events_.reset();
        corners_.stop();
    } else if (!events_) {
        X11::shared().selectOnRoot(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        events_ = X11::shared().onEvent([this](const auto& event) { handle(event); });
    }
}

void PanelStack::handle(const xcb_generic_event_t& event) {
    if (isYielding_) return;
    switch (event.response_type) {
        case XCB_MAP_NOTIFY: {
            const auto& map = reinterpret_cast<const xcb_map_notify_event_t&>(event);
            if (map.event == X11::shared().root() && !owns(map.window)) keepOnTop();
            break;
        }
        case XCB_CONFIGURE_NOTIFY: {
            // Qt passes on only the last of several ConfigureNotify events in a row, so the event
            // of the window that came to the top may be missing. Every event therefore raises the
            // panels. Raising a panel that is already on top changes nothing and causes no event.
            const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            if (configure.event == X11::shared().root()) keepOnTop();
            break;
        }
        case XCB_CIRCULATE_NOTIFY: {
            const auto& circulate = reinterpret_cast<const xcb_circulate_notify_event_t&>(event);
            if (circulate.event == X11::shared().root() && !owns(circulate.window)) keepOnTop();
            break;
        }
        default:
            break;
    }
}

void PanelStack::keepOnTop() {
    if (!shows(WindowLevel::quickBlur)) {
        if (!corners_.isActive()) corners_.start();
        return;
    }
    // A lock yields on request. Quick Blur yields to a locker by itself: a locker would raise
    // itself again endlessly, and hides the screen just as well.
    if (!shows(WindowLevel::lock) && foreignLockerIsOnTop()) return;
    raise();
}

bool PanelStack::foreignLockerIsOnTop() const {
    const auto& x11 = X11::shared();
    return OrvelSystem::windowsAbove(x11.connection(), x11.root(),
                                     [this](xcb_window_t window) { return isFloating(window); })
        .locker;
}

}  // namespace OrvelBlur
