#include "OrvelSystem/Linux/MirrorConnection.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <ranges>
#include <utility>

#include <unistd.h>
#include <xcb/randr.h>
#include <xcb/res.h>
#include <xcb/xinput.h>

// libxcb's header has a member named `explicit`.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include "OrvelSystem/Linux/Monitors.h"

namespace OrvelSystem {

using OrvelCore::Rect;
using OrvelCore::WindowInfo;

namespace {

// Window levels, as lists of windows have them.
constexpr std::int64_t floatingLayer = 3;
constexpr std::int64_t dockLayer = 20;
constexpr std::int64_t menuLayer = 101;
constexpr std::int64_t desktopLayer = -2147483623;

// The modifiers in the X protocol's own bits. Alt is the first of the five without a fixed meaning
// on every key map in use.
constexpr unsigned optionMask = XCB_MOD_MASK_1;
constexpr unsigned otherModifiers =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_3 | XCB_MOD_MASK_4 | XCB_MOD_MASK_5;

constexpr std::uint32_t iconicState = 3;
constexpr std::uint32_t propertyWords = 32;
/// A window manager puts a program's window one or two levels below the frame's, on top of the
/// many small ones that it decorates the frame with.
constexpr int clientDepth = 2;
constexpr int mostChildren = 32;
/// A program that never stops changing its windows must not keep the others' changes back.
constexpr int eventsPerRound = 4096;

template <class Geometry>
Rect frameOf(const Geometry& geometry) {
    const double border = 2.0 * geometry.border_width;
    return {static_cast<double>(geometry.x), static_cast<double>(geometry.y),
            geometry.width + border, geometry.height + border};
}

xcb_get_property_cookie_t ask(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t atom) {
    return xcb_get_property(connection, 0, window, atom, XCB_GET_PROPERTY_TYPE_ANY, 0,
                            propertyWords);
}

std::vector<std::uint32_t> answer(xcb_connection_t* connection, xcb_get_property_cookie_t cookie) {
    const XReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* const values =
        static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

std::string textAnswer(xcb_connection_t* connection, xcb_get_property_cookie_t cookie) {
    const XReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 8) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

std::string hostName() {
    std::array<char, 256> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : std::string();
}

bool holds(const std::vector<std::uint32_t>& values, std::uint32_t value) {
    return std::ranges::find(values, value) != values.end();
}

void select(xcb_connection_t* connection, xcb_window_t window, std::uint32_t mask) {
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &mask);
}

}  // namespace

MirrorConnection::MirrorConnection(std::string_view levelProperty)
    : connection_(xcb_connect(nullptr, nullptr)), ownPID_(getpid()), hostName_(hostName()) {
    if (!isAlive()) return;
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    internAtoms(levelProperty);
    openExtensions();
    select(connection_, root_,
           XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    readTree();
    readInputs();
    displaysChanged_ = true;
    handleEvents();
}

MirrorConnection::~MirrorConnection() {
    xcb_disconnect(connection_);
}

bool MirrorConnection::isAlive() const {
    return xcb_connection_has_error(connection_) == 0;
}

int MirrorConnection::descriptor() const {
    return xcb_get_file_descriptor(connection_);
}

void MirrorConnection::internAtoms(std::string_view levelProperty) {
    const std::array<std::string_view, atomCount> names{"WM_STATE",
                                                        "_NET_WM_PID",
                                                        "_NET_WM_WINDOW_TYPE",
                                                        "_NET_WM_STATE",
                                                        "_GTK_FRAME_EXTENTS",
                                                        "_NET_WM_WINDOW_TYPE_DESKTOP",
                                                        "_NET_WM_WINDOW_TYPE_DOCK",
                                                        "_NET_WM_STATE_ABOVE",
                                                        "_NET_WM_STATE_HIDDEN",
                                                        "_NET_WM_STATE_SHADED",
                                                        levelProperty};
    std::array<xcb_intern_atom_cookie_t, atomCount> cookies{};
    for (std::size_t i = 0; i < names.size(); ++i) {
        cookies[i] = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(names[i].size()),
                                     names[i].data());
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        const XReply<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(connection_, cookies[i], nullptr));
        if (reply) atoms_[i] = reply->atom;
    }
}

void MirrorConnection::openExtensions() {
    const auto present = [this](xcb_extension_t& extension) {
        const auto* const data = xcb_get_extension_data(connection_, &extension);
        return data != nullptr && data->present != 0 ? data : nullptr;
    };
    hasClientIDs_ = present(xcb_res_id) != nullptr;
    if (const auto* const randr = present(xcb_randr_id)) {
        randrEvent_ = randr->first_event;
        hasMonitors_ = hasMonitors(connection_);
        xcb_randr_select_input(connection_, root_,
                               XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    }
    if (const auto* const xkb = present(xcb_xkb_id)) {
        const XReply<xcb_xkb_use_extension_reply_t> used(xcb_xkb_use_extension_reply(
            connection_, xcb_xkb_use_extension(connection_, 1, 0), nullptr));
        if (used && used->supported != 0) {
            xkbEvent_ = xkb->first_event;
            xcb_xkb_select_events_details_t details{};
            details.affectState =
                XCB_XKB_STATE_PART_MODIFIER_BASE | XCB_XKB_STATE_PART_POINTER_BUTTONS;
            details.stateDetails = details.affectState;
            xcb_xkb_select_events_aux(connection_, XCB_XKB_ID_USE_CORE_KBD,
                                      XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0, 0, 0, &details);
        }
    }
    if (const auto* const input = present(xcb_input_id)) {
        const XReply<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
            connection_, xcb_input_xi_query_version(connection_, 2, 2), nullptr));
        if (version && version->major_version >= 2) inputOpcode_ = input->major_opcode;
    }
}

// Raw events come whoever has the keyboard grabbed, but cost a wake-up each; so they are asked for
// only while Option is down.
void MirrorConnection::watchKeys(bool watch) {
    if (inputOpcode_ == 0) return;
    struct {
        xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
        std::uint32_t mask = 0;
    } selection;
    if (watch) selection.mask = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS;
    // Waits until it holds, so that no key goes unseen once it is known that Option is down.
    const XReply<xcb_generic_error_t> error(xcb_request_check(
        connection_, xcb_input_xi_select_events_checked(connection_, root_, 1, &selection.head)));
}

void MirrorConnection::readInputs() {
    if (xkbEvent_ == 0) return;
    const XReply<xcb_xkb_get_state_reply_t> state(xcb_xkb_get_state_reply(
        connection_, xcb_xkb_get_state(connection_, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (state) takeInputs(state->baseMods, state->ptrBtnState);
}

void MirrorConnection::takeInputs(unsigned modifiers, unsigned buttons) {
    auto& inputs = picture_.inputs;
    const bool option = (modifiers & optionMask) != 0;
    if (option != inputs.option) {
        // Without raw events any key may have been pressed.
        inputs.keyPressed = option && inputOpcode_ == 0;
        watchKeys(option);
    }
    inputs.button = (buttons & XCB_BUTTON_MASK_1) != 0;
    inputs.option = option;
    inputs.optionOnly = option && (modifiers & otherModifiers) == 0;
}

void MirrorConnection::readTree() {
    const auto cookie = xcb_query_tree(connection_, root_);
    treeSequence_ = cookie.sequence;
    const XReply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(connection_, cookie, nullptr));
    if (!tree) return;
    const xcb_window_t* const windows = xcb_query_tree_children(tree.get());
    const auto count = static_cast<std::size_t>(xcb_query_tree_children_length(tree.get()));
    children_.resize(count);
    for (std::size_t i = 0; i < count; ++i) children_[i].window = windows[i];
    unresolved_.assign(windows, windows + count);
}

MirrorConnection::Child* MirrorConnection::find(xcb_window_t window) {
    const auto found = std::ranges::find(children_, window, &Child::window);
    return found == children_.end() ? nullptr : &*found;
}

/// Finds out whose these are and what they are to the desktop. All questions about all of them go
/// out before the first answer is awaited.
void MirrorConnection::resolve(const std::vector<xcb_window_t>& windows) {
    struct Question {
        Child* child;
        xcb_get_window_attributes_cookie_t attributes;
        xcb_get_geometry_cookie_t geometry;
    };
    struct Candidate {
        Child* child;
        xcb_window_t window;
        xcb_get_property_cookie_t state;
        xcb_query_tree_cookie_t children;
    };
    std::vector<Question> questions;
    std::vector<Candidate> candidates;
    const auto propose = [&](Child* child, xcb_window_t window) {
        // To hear of a window that is put inside later, and of one that is marked later.
        if (!child->isPanel)
            select(connection_, window,
                   XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        parents_[window] = child->window;
        candidates.push_back({child, window, ask(connection_, window, atoms_[wmState]),
                              xcb_query_tree(connection_, window)});
    };
    for (const auto window : windows) {
        auto* const child = find(window);
        if (child == nullptr) continue;
        questions.push_back({child, xcb_get_window_attributes(connection_, window),
                             xcb_get_geometry(connection_, window)});
        child->client = 0;
        propose(child, window);
    }
    for (const auto& question : questions) {
        const XReply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(connection_, question.attributes, nullptr));
        const XReply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection_, question.geometry, nullptr));
        auto& child = *question.child;
        // Gone; the server will say so.
        child.isMapped = attributes && geometry;
        if (!child.isMapped) continue;
        child.isMapped = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        child.isInputOnly = attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY;
        child.isUnmanaged = attributes->override_redirect != 0;
        child.frame = frameOf(*geometry);
    }

    std::map<const Child*, std::uint32_t> clientStates;
    for (int depth = 0; depth <= clientDepth && !candidates.empty(); ++depth) {
        const auto asked = std::exchange(candidates, {});
        for (const auto& candidate : asked) {
            const auto state = answer(connection_, candidate.state);
            const XReply<xcb_query_tree_reply_t> tree(
                xcb_query_tree_reply(connection_, candidate.children, nullptr));
            if (candidate.child->client != 0) continue;
            if (!state.empty()) {
                candidate.child->client = candidate.window;
                clientStates[candidate.child] = state.front();
                // What a program does inside of its own window is its own affair.
                select(connection_, candidate.window, XCB_EVENT_MASK_PROPERTY_CHANGE);
                continue;
            }
            if (!tree || depth == clientDepth || candidate.child->isPanel) continue;
            const xcb_window_t* const inner = xcb_query_tree_children(tree.get());
            const int count = xcb_query_tree_children_length(tree.get());
            for (int i = count - 1; i >= std::max(0, count - mostChildren); --i)
                propose(candidate.child, inner[i]);
        }
    }

    struct Detail {
        Child* child;
        xcb_get_property_cookie_t type, state, pid, machine, extents, outerExtents, level;
        xcb_res_query_client_ids_cookie_t ids;
    };
    std::vector<Detail> details;
    for (const auto& question : questions) {
        auto& child = *question.child;
        const auto window = child.client != 0 ? child.client : child.window;
        Detail detail{&child,
                      ask(connection_, window, atoms_[netType]),
                      ask(connection_, window, atoms_[netState]),
                      ask(connection_, window, atoms_[netPID]),
                      ask(connection_, window, XCB_ATOM_WM_CLIENT_MACHINE),
                      ask(connection_, window, atoms_[frameExtents]),
                      ask(connection_, child.window, atoms_[frameExtents]),
                      ask(connection_, child.window, atoms_[level]),
                      {}};
        const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        if (hasClientIDs_) detail.ids = xcb_res_query_client_ids(connection_, 1, &spec);
        details.push_back(detail);
    }
    for (const auto& detail : details) {
        auto& child = *detail.child;
        const auto type = answer(connection_, detail.type);
        const auto state = answer(connection_, detail.state);
        const auto toldPID = answer(connection_, detail.pid);
        const auto machine = textAnswer(connection_, detail.machine);
        auto extents = answer(connection_, detail.extents);
        const auto outerExtents = answer(connection_, detail.outerExtents);
        const auto statedLevel = answer(connection_, detail.level);
        // A process of another machine may have the number of one of this.
        const bool isLocal = machine.empty() || machine == hostName_;
        child.pid = toldPID.empty() || !isLocal ? 0 : toldPID.front();
        if (hasClientIDs_) {
            const XReply<xcb_res_query_client_ids_reply_t> ids(
                xcb_res_query_client_ids_reply(connection_, detail.ids, nullptr));
            auto id = ids ? xcb_res_query_client_ids_ids_iterator(ids.get())
                          : xcb_res_client_id_value_iterator_t{};
            for (; id.rem != 0; xcb_res_client_id_value_next(&id)) {
                if ((id.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0 &&
                    xcb_res_client_id_value_value_length(id.data) > 0)
                    child.pid = *xcb_res_client_id_value_value(id.data);
            }
        }
        const auto clientState = clientStates.find(&child);
        // Of a shaded window the title still shows.
        child.isHidden =
            ((clientState != clientStates.end() && clientState->second == iconicState) ||
             holds(state, atoms_[stateHidden])) &&
            !holds(state, atoms_[stateShaded]);
        child.isPanel = child.pid == ownPID_ && !statedLevel.empty();
        if (child.isPanel)
            child.layer = static_cast<std::int32_t>(statedLevel.front());
        else if (child.client == 0 && child.isUnmanaged)
            child.layer = menuLayer;
        else if (holds(type, atoms_[typeDesktop]))
            child.layer = desktopLayer;
        else if (holds(type, atoms_[typeDock]))
            child.layer = dockLayer;
        else if (holds(state, atoms_[stateAbove]))
            child.layer = floatingLayer;
        else
            child.layer = 0;
        child.shadow = {};
        // Some window managers' frames are drawn by a toolkit, with a shadow of their own.
        if (!outerExtents.empty()) extents = outerExtents;
        if (extents.size() == 4 && child.client != 0)
            std::ranges::copy(extents, child.shadow.begin());
        child.isResolved = true;
    }
}

bool MirrorConnection::handleEvents() {
    const auto inputsBefore = picture_.inputs;
    const auto displaysBefore = picture_.displays;
    xcb_flush(connection_);
    int handled = 0;
    for (; handled < eventsPerRound; ++handled) {
        const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)};
        if (!event) break;
        handle(*event);
    }
    // Answers bring events along, of which the socket no longer tells.
    mayHaveMore_ = handled == eventsPerRound || displaysChanged_ || !unresolved_.empty();
    if (std::exchange(displaysChanged_, false)) {
        picture_.displays.clear();
        for (const auto& monitor : readMonitors(connection_, root_, hasMonitors_))
            picture_.displays.push_back(monitor.frame);
    }
    if (!unresolved_.empty()) {
        auto windows = std::exchange(unresolved_, {});
        std::ranges::sort(windows);
        windows.erase(std::unique(windows.begin(), windows.end()), windows.end());
        resolve(windows);
    }
    return takePicture() || picture_.inputs != inputsBefore || picture_.displays != displaysBefore;
}

bool MirrorConnection::takePicture() {
    std::vector<WindowInfo> windows;
    windows.reserve(picture_.windows.size() + 1);
    for (const auto& child : children_ | std::views::reverse) {
        if (!child.isMapped || !child.isResolved || child.isInputOnly || child.isHidden) continue;
        const auto& [left, right, top, bottom] = child.shadow;
        const Rect inner{child.frame.x + left, child.frame.y + top,
                         child.frame.width - left - right, child.frame.height - top - bottom};
        windows.push_back(
            {child.window, child.pid, child.layer, inner.isEmpty() ? child.frame : inner});
    }
    if (windows == picture_.windows) return false;
    picture_.windows = std::move(windows);
    return true;
}

void MirrorConnection::restack(xcb_window_t window, xcb_window_t above) {
    const auto found = std::ranges::find(children_, window, &Child::window);
    if (found == children_.end()) return;
    const auto isAbove = found == children_.begin() ? XCB_NONE : std::prev(found)->window;
    if (isAbove == above) return;
    const auto child = *found;
    children_.erase(found);
    const auto sibling = std::ranges::find(children_, above, &Child::window);
    const auto place = sibling == children_.end() ? children_.begin() : std::next(sibling);
    children_.insert(place, child);
}

void MirrorConnection::remove(xcb_window_t window) {
    std::erase_if(children_, [&](const Child& child) { return child.window == window; });
    std::erase_if(parents_, [&](const auto& entry) { return entry.second == window; });
}

void MirrorConnection::handle(const xcb_generic_event_t& event) {
    const auto type = event.response_type & 0x7F;
    if (type == XCB_GE_GENERIC || (xkbEvent_ != 0 && type == xkbEvent_)) return handleInput(event);
    if (randrEvent_ != 0 && (type == randrEvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                             type == randrEvent_ + XCB_RANDR_NOTIFY)) {
        displaysChanged_ = true;
        return;
    }
    // Events from before the tree was read are in it already; those since are applied to it.
    if (treeSequence_ && static_cast<std::int32_t>(event.full_sequence - *treeSequence_) < 0)
        return;
    treeSequence_.reset();
    // Of what happens inside of a child only that it may have become another one matters.
    const auto insideOf = [this](xcb_window_t window) {
        if (const auto parent = parents_.find(window); parent != parents_.end())
            unresolved_.push_back(parent->second);
    };
    switch (type) {
        case XCB_CREATE_NOTIFY: {
            const auto& create = reinterpret_cast<const xcb_create_notify_event_t&>(event);
            if (create.parent != root_ || find(create.window) != nullptr) break;
            children_.push_back({.window = create.window,
                                 .frame = frameOf(create),
                                 .isUnmanaged = create.override_redirect != 0});
            break;
        }
        case XCB_DESTROY_NOTIFY: {
            const auto& destroy = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
            if (destroy.event == root_)
                remove(destroy.window);
            else
                insideOf(destroy.event);
            break;
        }
        case XCB_MAP_NOTIFY: {
            const auto& map = reinterpret_cast<const xcb_map_notify_event_t&>(event);
            if (map.event != root_) return insideOf(map.event);
            if (auto* const child = find(map.window)) {
                child->isMapped = true;
                // Of one that is known each change since was told.
                if (!child->isResolved) unresolved_.push_back(map.window);
            }
            break;
        }
        case XCB_UNMAP_NOTIFY: {
            const auto& unmap = reinterpret_cast<const xcb_unmap_notify_event_t&>(event);
            if (unmap.event != root_) return insideOf(unmap.event);
            if (auto* const child = find(unmap.window)) child->isMapped = false;
            break;
        }
        case XCB_REPARENT_NOTIFY: {
            const auto& reparent = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
            if (reparent.event != root_) return insideOf(reparent.event);
            remove(reparent.window);
            if (reparent.parent != root_) break;
            children_.push_back(
                {.window = reparent.window, .isUnmanaged = reparent.override_redirect != 0});
            unresolved_.push_back(reparent.window);
            break;
        }
        case XCB_CONFIGURE_NOTIFY: {
            const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            if (configure.window == root_) displaysChanged_ = true;
            auto* const child = configure.event == root_ ? find(configure.window) : nullptr;
            if (child == nullptr) break;
            child->frame = frameOf(configure);
            restack(configure.window, configure.above_sibling);
            break;
        }
        case XCB_GRAVITY_NOTIFY: {
            const auto& gravity = reinterpret_cast<const xcb_gravity_notify_event_t&>(event);
            auto* const child = gravity.event == root_ ? find(gravity.window) : nullptr;
            if (child == nullptr) break;
            child->frame.x = gravity.x;
            child->frame.y = gravity.y;
            break;
        }
        case XCB_CIRCULATE_NOTIFY: {
            const auto& circulate = reinterpret_cast<const xcb_circulate_notify_event_t&>(event);
            if (circulate.event != root_ || children_.empty()) break;
            const bool toTop = circulate.place == XCB_PLACE_ON_TOP;
            if (!toTop || children_.back().window != circulate.window)
                restack(circulate.window, toTop ? children_.back().window : XCB_NONE);
            break;
        }
        case XCB_PROPERTY_NOTIFY: {
            const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if (std::ranges::find(atoms_, property.atom) != atoms_.end()) insideOf(property.window);
            break;
        }
        default:
            break;
    }
}

void MirrorConnection::handleInput(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7F) == XCB_GE_GENERIC) {
        const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
        if (inputOpcode_ != 0 && generic.extension == inputOpcode_ &&
            generic.event_type == XCB_INPUT_RAW_KEY_PRESS)
            picture_.inputs.keyPressed = picture_.inputs.option;
        return;
    }
    const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
    if (state.xkbType == XCB_XKB_STATE_NOTIFY) takeInputs(state.baseMods, state.ptrBtnState);
}

}  // namespace OrvelSystem
