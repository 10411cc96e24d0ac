#include "OrvelSystem/X11/MirrorConnection.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include <unistd.h>
#include <xcb/res.h>
#include <xcb/xinput.h>

// This C header has a field named `explicit`, which is a C++ keyword.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace OrvelSystem {

namespace {

// Layers of windows, with the values of the macOS window server.
constexpr std::int64_t floatingLayer = 3;
constexpr std::int64_t dockLayer = 20;
constexpr std::int64_t menuLayer = 101;
constexpr std::int64_t desktopLayer = -2147483623;

constexpr std::uint32_t iconicState = 3;
constexpr std::uint32_t propertyWords = 32;
/// Window managers place a program's window one or two levels below the frame, on top of the many
/// small windows that decorate the frame.
constexpr int clientDepth = 2;
constexpr int mostChildren = 32;
/// Events per round. Without a limit, a program that changes its windows continuously would hold up
/// the changes of other programs.
constexpr int eventsPerRound = 4096;

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
    state_.server.root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    internAtoms(levelProperty);
    openExtensions();
    select(connection_, root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    readTree();
    readInputs();
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
        state_.server.atoms.push_back(reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE});
    }
}

void MirrorConnection::openExtensions() {
    const auto present = [this](xcb_extension_t& extension) {
        const auto* const data = xcb_get_extension_data(connection_, &extension);
        return data != nullptr && data->present != 0 ? data : nullptr;
    };
    hasClientIDs_ = present(xcb_res_id) != nullptr;
    if (const auto* const xkb = present(xcb_xkb_id)) {
        const XReply<xcb_xkb_use_extension_reply_t> used(xcb_xkb_use_extension_reply(
            connection_, xcb_xkb_use_extension(connection_, 1, 0), nullptr));
        if (used && used->supported != 0) {
            state_.server.xkbEvent = xkb->first_event;
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
        if (version && version->major_version >= 2) state_.server.inputOpcode = input->major_opcode;
    }
}

// Raw events arrive even while another client has grabbed the keyboard, but each of them wakes the
// thread. So select them only while Option is down.
void MirrorConnection::watchKeys() {
    const bool watch = state_.inputs().option;
    if (watch == watchesKeys_ || state_.server.inputOpcode == 0) return;
    watchesKeys_ = watch;
    struct {
        xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
        std::uint32_t mask = 0;
    } selection;
    if (watch) selection.mask = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS;
    // Wait until the selection is active, so that no key is missed once Option is known to be down.
    const XReply<xcb_generic_error_t> error(xcb_request_check(
        connection_, xcb_input_xi_select_events_checked(connection_, root(), 1, &selection.head)));
}

void MirrorConnection::readInputs() {
    if (state_.server.xkbEvent == 0) return;
    const XReply<xcb_xkb_get_state_reply_t> state(xcb_xkb_get_state_reply(
        connection_, xcb_xkb_get_state(connection_, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    if (!state) return;
    state_.takeInputs(state->baseMods, state->ptrBtnState);
    watchKeys();
}

void MirrorConnection::readTree() {
    const auto cookie = xcb_query_tree(connection_, root());
    const XReply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(connection_, cookie, nullptr));
    if (!tree) return;
    const xcb_window_t* const windows = xcb_query_tree_children(tree.get());
    const auto count = static_cast<std::size_t>(xcb_query_tree_children_length(tree.get()));
    state_.setTree({windows, windows + count}, cookie.sequence);
}

/// Determines the owner of each window and its role on the desktop. All requests for all windows
/// are sent before the first reply is awaited.
void MirrorConnection::resolve(const std::vector<xcb_window_t>& windows) {
    using Child = MirrorState::Child;
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
        // Reports windows that are inserted later, and properties that are set later.
        if (!child->isPanel)
            select(connection_, window,
                   XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        state_.follow(window, child->window);
        candidates.push_back({child, window, ask(connection_, window, atom(wmState)),
                              xcb_query_tree(connection_, window)});
    };
    for (const auto window : windows) {
        auto* const child = state_.find(window);
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
        // The window no longer exists; the server will report that.
        child.isMapped = attributes && geometry;
        if (!child.isMapped) continue;
        child.isMapped = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        child.isInputOnly = attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY;
        child.isUnmanaged = attributes->override_redirect != 0;
        child.frame = MirrorState::frameOf(*geometry);
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
                // Windows inside a program's own window do not matter.
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
                      ask(connection_, window, atom(netType)),
                      ask(connection_, window, atom(netState)),
                      ask(connection_, window, atom(netPID)),
                      ask(connection_, window, XCB_ATOM_WM_CLIENT_MACHINE),
                      ask(connection_, window, atom(frameExtents)),
                      ask(connection_, child.window, atom(frameExtents)),
                      ask(connection_, child.window, atom(level)),
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
        // The process ID of a program on another machine may match a local one.
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
        // The title bar of a shaded window is still visible.
        child.isHidden =
            ((clientState != clientStates.end() && clientState->second == iconicState) ||
             holds(state, atom(stateHidden))) &&
            !holds(state, atom(stateShaded));
        child.isPanel = child.pid == ownPID_ && !statedLevel.empty();
        if (child.isPanel)
            child.layer = static_cast<std::int32_t>(statedLevel.front());
        else if (child.client == 0 && child.isUnmanaged)
            child.layer = menuLayer;
        else if (holds(type, atom(typeDesktop)))
            child.layer = desktopLayer;
        else if (holds(type, atom(typeDock)))
            child.layer = dockLayer;
        else if (holds(state, atom(stateAbove)))
            child.layer = floatingLayer;
        else
            child.layer = 0;
        child.shadow = {};
        // Some window managers draw frames with a toolkit, which adds its own shadow.
        if (!outerExtents.empty()) extents = outerExtents;
        if (extents.size() == 4 && child.client != 0)
            std::ranges::copy(extents, child.shadow.begin());
        child.isResolved = true;
    }
}

bool MirrorConnection::handleEvents() {
    const auto before = screen_;
    xcb_flush(connection_);
    int handled = 0;
    for (; handled < eventsPerRound; ++handled) {
        const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)};
        if (!event) break;
        state_.handle(*event);
        watchKeys();
    }
    // Waiting for replies also reads events, and the socket does not report those again.
    mayHaveMore_ = handled == eventsPerRound || state_.hasUnresolved();
    if (state_.hasUnresolved()) resolve(state_.takeUnresolved());
    screen_.windows = state_.windows();
    screen_.inputs = state_.inputs();
    return screen_ != before;
}

}  // namespace OrvelSystem
