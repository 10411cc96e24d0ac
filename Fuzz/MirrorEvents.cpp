// A small X server whose windows are created, changed and destroyed according to the input. When
// the mirror has received all events, it must match the server.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <map>
#include <ranges>
#include <span>
#include <vector>

#include <xcb/xinput.h>
// libxcb's header has a member named `explicit`, which is a C++ keyword.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include "OrvelSystem/X11/MirrorState.h"

using OrvelSystem::MirrorState;

namespace {

constexpr xcb_window_t root = 100;
constexpr xcb_atom_t knownAtom = 300;
constexpr std::uint8_t xkbEvent = 85;
constexpr std::uint8_t inputOpcode = 131;

void require(bool holds) {
    if (!holds) std::abort();
}

class Bytes {
  public:
    explicit Bytes(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    bool isEmpty() const { return bytes_.empty(); }
    std::uint8_t next() {
        if (bytes_.empty()) return 0;
        const auto byte = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return byte;
    }

  private:
    std::span<const std::uint8_t> bytes_;
};

/// An event with space for the field that libxcb appends.
union Event {
    xcb_generic_event_t generic;
    xcb_create_notify_event_t create;
    xcb_destroy_notify_event_t destroy;
    xcb_map_notify_event_t map;
    xcb_unmap_notify_event_t unmap;
    xcb_reparent_notify_event_t reparent;
    xcb_configure_notify_event_t configure;
    xcb_gravity_notify_event_t gravity;
    xcb_circulate_notify_event_t circulate;
    xcb_property_notify_event_t property;
    xcb_ge_generic_event_t extension;
    xcb_xkb_state_notify_event_t state;
    std::array<std::uint8_t, 64> bytes;
};

struct Window {
    xcb_window_t parent = root;
    bool isMapped = false;
    bool isUnmanaged = false;
    std::int16_t x = 0, y = 0;
    std::uint16_t width = 1, height = 1, border_width = 0;
};

class Server {
  public:
    Server() { state_.server = {root, {knownAtom}, xkbEvent, inputOpcode}; }

    void act(Bytes& input) {
        const auto action = input.next() % 13;
        const xcb_window_t window = 1 + input.next() % 12;
        const auto found = windows_.find(window);
        const bool exists = found != windows_.end();
        const bool isOnRoot = exists && found->second.parent == root;
        switch (action) {
            case 0:
                return create(window, input);
            case 1:
                if (exists) destroy(window);
                return;
            case 2:
                if (exists) map(window, found->second);
                return;
            case 3:
                if (exists) unmap(window, found->second);
                return;
            case 4:
                if (exists) reparent(window, found->second, 1 + input.next() % 12);
                return;
            case 5:
                if (isOnRoot) configure(window, found->second, input);
                return;
            case 6:
                if (isOnRoot) circulate(window, input.next() % 2 == 0);
                return;
            case 7:
                if (isOnRoot) move(window, found->second, input);
                return;
            case 8: {
                Event event{};
                event.property = {.response_type = XCB_PROPERTY_NOTIFY,
                                  .window = window,
                                  .atom = input.next() % 2 == 0 ? knownAtom : knownAtom + 1};
                return send(event);
            }
            case 9:
                return changeInputs(input.next(), input.next());
            case 10:
                return pressKey();
            case 11:
                return hear(input.next());
            default:
                if (!isRead_) readTree();
                return answer();
        }
    }

    void settle() {
        if (!isRead_) readTree();
        while (!queue_.empty() || state_.hasUnresolved()) {
            hear(queue_.size());
            answer();
        }
        std::vector<std::pair<std::int64_t, OrvelCore::Rect>> expected;
        for (const auto window : stack_ | std::views::reverse) {
            const auto& it = windows_.at(window);
            if (it.isMapped) expected.emplace_back(window, MirrorState::frameOf(it));
        }
        std::vector<std::pair<std::int64_t, OrvelCore::Rect>> shown;
        for (const auto& window : state_.windows())
            shown.emplace_back(window.number, window.bounds);
        require(shown == expected);
        for (const auto window : stack_) {
            const auto* const child = state_.find(window);
            require(child != nullptr && child->isUnmanaged == windows_.at(window).isUnmanaged);
        }
        require(state_.inputs().option == option_ && state_.inputs().button == button_);
        require(state_.inputs().keyPressed == pressed_);
        require(!state_.inputs().optionOnly || option_);
    }

  private:
    void send(Event event) {
        event.generic.full_sequence = ++sequence_;
        queue_.push_back(event);
    }
    /// Sends the event once for the window's parent, as the server does for clients that select
    /// SubstructureNotify on it.
    void create(xcb_window_t window, Bytes& input) {
        if (windows_.contains(window)) return;
        auto& made = windows_[window];
        made.isUnmanaged = input.next() % 2 == 0;
        made.width = 1 + input.next();
        stack_.push_back(window);
        Event event{};
        event.create = {.response_type = XCB_CREATE_NOTIFY,
                        .parent = root,
                        .window = window,
                        .width = made.width,
                        .height = made.height,
                        .override_redirect = made.isUnmanaged};
        send(event);
    }
    void destroy(xcb_window_t window) {
        std::vector<xcb_window_t> inside;
        for (const auto& [other, it] : windows_)
            if (it.parent == window) inside.push_back(other);
        for (const auto other : inside) destroy(other);
        Event event{};
        event.destroy = {.response_type = XCB_DESTROY_NOTIFY,
                         .event = windows_.at(window).parent,
                         .window = window};
        send(event);
        std::erase(stack_, window);
        windows_.erase(window);
    }
    void map(xcb_window_t window, Window& it) {
        if (it.isMapped) return;
        it.isMapped = true;
        Event event{};
        event.map = {.response_type = XCB_MAP_NOTIFY,
                     .event = it.parent,
                     .window = window,
                     .override_redirect = it.isUnmanaged};
        send(event);
    }
    void unmap(xcb_window_t window, Window& it) {
        if (!it.isMapped) return;
        it.isMapped = false;
        Event event{};
        event.unmap = {.response_type = XCB_UNMAP_NOTIFY, .event = it.parent, .window = window};
        send(event);
    }
    /// Reparents to the root if `into` is not a suitable window.
    void reparent(xcb_window_t window, Window& it, xcb_window_t into) {
        for (auto outer = into; outer != root;) {
            const auto found = windows_.find(outer);
            if (found == windows_.end() || outer == window) {
                into = root;
                break;
            }
            outer = found->second.parent;
        }
        const bool wasMapped = it.isMapped;
        unmap(window, it);
        const auto from = it.parent;
        it.parent = into;
        std::erase(stack_, window);
        if (into == root) stack_.push_back(window);
        Event event{};
        event.reparent = {.response_type = XCB_REPARENT_NOTIFY,
                          .event = from,
                          .window = window,
                          .parent = into,
                          .x = it.x,
                          .y = it.y,
                          .override_redirect = it.isUnmanaged};
        send(event);
        event.reparent.event = into;
        if (into != from) send(event);
        if (wasMapped) map(window, it);
    }
    void configure(xcb_window_t window, Window& it, Bytes& input) {
        it.x = static_cast<std::int16_t>(input.next() - 128);
        it.width = 1 + input.next();
        it.border_width = input.next() % 4;
        std::erase(stack_, window);
        const auto place = input.next() % (stack_.size() + 1);
        stack_.insert(stack_.begin() + static_cast<std::ptrdiff_t>(place), window);
        Event event{};
        event.configure = {.response_type = XCB_CONFIGURE_NOTIFY,
                           .event = root,
                           .window = window,
                           .above_sibling = place == 0 ? xcb_window_t(XCB_NONE) : stack_[place - 1],
                           .x = it.x,
                           .y = it.y,
                           .width = it.width,
                           .height = it.height,
                           .border_width = it.border_width,
                           .override_redirect = it.isUnmanaged};
        send(event);
    }
    void circulate(xcb_window_t window, bool toTop) {
        std::erase(stack_, window);
        stack_.insert(toTop ? stack_.end() : stack_.begin(), window);
        Event event{};
        event.circulate = {
            .response_type = XCB_CIRCULATE_NOTIFY,
            .event = root,
            .window = window,
            .place = static_cast<std::uint8_t>(toTop ? XCB_PLACE_ON_TOP : XCB_PLACE_ON_BOTTOM)};
        send(event);
    }
    void move(xcb_window_t window, Window& it, Bytes& input) {
        it.y = static_cast<std::int16_t>(input.next() - 128);
        Event event{};
        event.gravity = {.response_type = XCB_GRAVITY_NOTIFY,
                         .event = root,
                         .window = window,
                         .x = it.x,
                         .y = it.y};
        send(event);
    }
    void changeInputs(std::uint8_t modifiers, std::uint8_t buttons) {
        const bool option = (modifiers & XCB_MOD_MASK_1) != 0;
        if (option != option_) pressed_ = false;
        option_ = option;
        button_ = (buttons & 1) != 0;
        Event event{};
        event.state.response_type = xkbEvent;
        event.state.xkbType = XCB_XKB_STATE_NOTIFY;
        event.state.baseMods = modifiers;
        event.state.ptrBtnState = static_cast<std::uint16_t>(buttons << 8);
        send(event);
    }
    void pressKey() {
        pressed_ = option_;
        Event event{};
        event.extension = {.response_type = XCB_GE_GENERIC,
                           .extension = inputOpcode,
                           .event_type = XCB_INPUT_RAW_KEY_PRESS};
        send(event);
    }

    void readTree() {
        isRead_ = true;
        state_.setTree(stack_, ++sequence_);
    }
    void hear(std::size_t count) {
        // The mirror receives no events before it has read the tree, but earlier events may still
        // be queued.
        for (; isRead_ && count > 0 && !queue_.empty(); --count) {
            state_.handle(queue_.front().generic);
            queue_.pop_front();
        }
    }
    /// The server's replies describe the current state, which may be newer than the queued events.
    void answer() {
        for (const auto window : state_.takeUnresolved()) {
            auto* const child = state_.find(window);
            if (child == nullptr) continue;
            state_.follow(window, window);
            for (const auto& [other, it] : windows_)
                if (it.parent == window) state_.follow(other, window);
            const auto found = windows_.find(window);
            child->isResolved = true;
            child->isMapped = found != windows_.end() && found->second.isMapped;
            if (found == windows_.end()) continue;
            child->isUnmanaged = found->second.isUnmanaged;
            child->frame = MirrorState::frameOf(found->second);
        }
    }

    MirrorState state_;
    std::map<xcb_window_t, Window> windows_;
    std::vector<xcb_window_t> stack_;  // bottom first
    std::deque<Event> queue_;
    unsigned sequence_ = 0xFFFFFFF0;  // overflows soon
    bool isRead_ = false;
    bool option_ = false, button_ = false, pressed_ = false;
};

/// For any bytes, no window may be listed twice.
void handleNonsense(std::span<const std::uint8_t> data) {
    MirrorState state;
    state.server = {root, {knownAtom}, xkbEvent, inputOpcode};
    state.setTree({1, 2, 3}, 0);
    while (!data.empty()) {
        Event event{};
        const auto size = std::min<std::size_t>(data.size(), 32);
        std::memcpy(event.bytes.data(), data.data(), size);
        data = data.subspan(size);
        state.handle(event.generic);
        for (const auto window : state.takeUnresolved()) {
            if (auto* const child = state.find(window)) child->isResolved = child->isMapped = true;
        }
    }
    std::vector<std::int64_t> numbers;
    for (const auto& window : state.windows()) numbers.push_back(window.number);
    std::ranges::sort(numbers);
    require(std::ranges::adjacent_find(numbers) == numbers.end());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::span input(data + 1, size - 1);
    if (data[0] % 2 != 0) {
        handleNonsense(input);
        return 0;
    }
    Server server;
    for (Bytes bytes(input); !bytes.isEmpty();) server.act(bytes);
    server.settle();
    return 0;
}
