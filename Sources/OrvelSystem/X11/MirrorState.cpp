#include "OrvelSystem/X11/MirrorState.h"

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

#include <xcb/xinput.h>

// This C header has a field named `explicit`, which is a C++ keyword.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace OrvelSystem {

using OrvelCore::Rect;
using OrvelCore::WindowInfo;

namespace {

// Modifiers as bits of the X protocol. Alt is Mod1 in every common key map.
constexpr unsigned optionMask = XCB_MOD_MASK_1;
constexpr unsigned otherModifiers =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_3 | XCB_MOD_MASK_4 | XCB_MOD_MASK_5;

}  // namespace

void MirrorState::setTree(const std::vector<xcb_window_t>& windows, unsigned sequence) {
    treeSequence_ = sequence;
    children_.clear();
    places_.clear();
    for (const auto window : windows) add({.window = window});
    unresolved_ = windows;
}

MirrorState::Child* MirrorState::find(xcb_window_t window) {
    const auto found = places_.find(window);
    return found == places_.end() ? nullptr : &*found->second;
}

MirrorState::Children::const_iterator MirrorState::placeOf(xcb_window_t window) const {
    const auto found = places_.find(window);
    return found == places_.end() ? children_.end() : Children::const_iterator(found->second);
}

/// Adds a child on top.
void MirrorState::add(const Child& child) {
    remove(child.window);
    places_[child.window] = children_.insert(children_.end(), child);
}

std::vector<xcb_window_t> MirrorState::takeUnresolved() {
    auto windows = std::exchange(unresolved_, {});
    std::ranges::sort(windows);
    windows.erase(std::unique(windows.begin(), windows.end()), windows.end());
    return windows;
}

std::vector<WindowInfo> MirrorState::windows() const {
    std::vector<WindowInfo> windows;
    windows.reserve(children_.size());
    for (const auto& child : children_ | std::views::reverse) {
        if (!child.isMapped || !child.isResolved || child.isInputOnly || child.isHidden) continue;
        const auto& [left, right, top, bottom] = child.shadow;
        const Rect inner{child.frame.x + left, child.frame.y + top,
                         child.frame.width - left - right, child.frame.height - top - bottom};
        windows.push_back(
            {child.window, child.pid, child.layer, inner.isEmpty() ? child.frame : inner});
    }
    return windows;
}

void MirrorState::takeInputs(unsigned modifiers, unsigned buttons) {
    modifiers_ = modifiers;
    const bool option = (modifiers & optionMask) != 0;
    // Without raw events, any key may have been pressed.
    if (option != inputs_.option) inputs_.keyPressed = option && server.inputOpcode == 0;
    inputs_.button = (buttons & XCB_BUTTON_MASK_1) != 0;
    inputs_.option = option;
    inputs_.optionOnly = option && (modifiers & otherModifiers) == 0;
}

void MirrorState::restack(xcb_window_t window, xcb_window_t above) {
    const auto found = places_.find(window);
    if (found == places_.end() || window == above) return;
    const auto sibling = places_.find(above);
    const auto place = sibling == places_.end() ? children_.begin() : std::next(sibling->second);
    children_.splice(place, children_, found->second);
}

void MirrorState::remove(xcb_window_t window) {
    const auto found = places_.find(window);
    if (found == places_.end()) return;
    children_.erase(found->second);
    places_.erase(found);
    std::erase_if(parents_, [&](const auto& entry) { return entry.second == window; });
}

void MirrorState::handle(const xcb_generic_event_t& event) {
    const auto type = event.response_type;
    if (type == XCB_GE_GENERIC || (server.xkbEvent != 0 && type == server.xkbEvent))
        return handleInput(event);
    // The tree already contains the effects of events from before it was read; later events are
    // applied to it.
    if (treeSequence_ && static_cast<std::int32_t>(event.full_sequence - *treeSequence_) < 0)
        return;
    treeSequence_.reset();
    // An event below a top-level window matters only because its client may have changed: resolve
    // it again.
    const auto insideOf = [this](xcb_window_t window) {
        if (const auto parent = parents_.find(window); parent != parents_.end())
            unresolved_.push_back(parent->second);
    };
    switch (type) {
        case XCB_CREATE_NOTIFY: {
            const auto& create = reinterpret_cast<const xcb_create_notify_event_t&>(event);
            if (create.parent != server.root || find(create.window) != nullptr) break;
            add({.window = create.window,
                 .frame = frameOf(create),
                 .isUnmanaged = create.override_redirect != 0});
            break;
        }
        case XCB_DESTROY_NOTIFY: {
            const auto& destroy = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
            if (destroy.event == server.root)
                remove(destroy.window);
            else
                insideOf(destroy.event);
            break;
        }
        case XCB_MAP_NOTIFY: {
            const auto& map = reinterpret_cast<const xcb_map_notify_event_t&>(event);
            if (map.event != server.root) return insideOf(map.event);
            if (auto* const child = find(map.window)) {
                child->isMapped = true;
                // A resolved child is up to date: later changes arrived as events.
                if (!child->isResolved) unresolved_.push_back(map.window);
            }
            break;
        }
        case XCB_UNMAP_NOTIFY: {
            const auto& unmap = reinterpret_cast<const xcb_unmap_notify_event_t&>(event);
            if (unmap.event != server.root) return insideOf(unmap.event);
            if (auto* const child = find(unmap.window)) child->isMapped = false;
            break;
        }
        case XCB_REPARENT_NOTIFY: {
            const auto& reparent = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
            if (reparent.event != server.root) return insideOf(reparent.event);
            remove(reparent.window);
            if (reparent.parent != server.root) break;
            add({.window = reparent.window, .isUnmanaged = reparent.override_redirect != 0});
            unresolved_.push_back(reparent.window);
            break;
        }
        case XCB_CONFIGURE_NOTIFY: {
            const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            auto* const child = configure.event == server.root ? find(configure.window) : nullptr;
            if (child == nullptr) break;
            child->frame = frameOf(configure);
            restack(configure.window, configure.above_sibling);
            break;
        }
        case XCB_GRAVITY_NOTIFY: {
            const auto& gravity = reinterpret_cast<const xcb_gravity_notify_event_t&>(event);
            auto* const child = gravity.event == server.root ? find(gravity.window) : nullptr;
            if (child == nullptr) break;
            child->frame.x = gravity.x;
            child->frame.y = gravity.y;
            break;
        }
        case XCB_CIRCULATE_NOTIFY: {
            const auto& circulate = reinterpret_cast<const xcb_circulate_notify_event_t&>(event);
            if (circulate.event != server.root || children_.empty()) break;
            const bool toTop = circulate.place == XCB_PLACE_ON_TOP;
            if (!toTop || children_.back().window != circulate.window)
                restack(circulate.window, toTop ? children_.back().window : XCB_NONE);
            break;
        }
        case XCB_PROPERTY_NOTIFY: {
            const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if (std::ranges::find(server.atoms, property.atom) != server.atoms.end())
                insideOf(property.window);
            break;
        }
        default:
            break;
    }
}

void MirrorState::handleInput(const xcb_generic_event_t& event) {
    if (event.response_type == XCB_GE_GENERIC) {
        const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
        if (server.inputOpcode != 0 && generic.extension == server.inputOpcode &&
            generic.event_type == XCB_INPUT_RAW_KEY_PRESS)
            pressedBefore_ = std::exchange(inputs_.keyPressed, inputs_.option);
        return;
    }
    const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
    if (state.xkbType != XCB_XKB_STATE_NOTIFY) return;
    const bool wasOption = inputs_.option;
    const unsigned added = state.baseMods & ~modifiers_;
    takeInputs(state.baseMods, state.ptrBtnState);
    // The key press that caused this event was that of a modifier.
    if (wasOption && inputs_.option && added != 0 && state.eventType == XCB_KEY_PRESS)
        inputs_.keyPressed = pressedBefore_;
}

}  // namespace OrvelSystem
