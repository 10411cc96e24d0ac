#pragma once

#include <array>
#include <cstdint>
#include <list>
#include <optional>
#include <unordered_map>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelSystem/X11/ScreenState.h"

namespace OrvelSystem {

/// The state of the root window's children, the pointer and the modifier keys, updated by the X
/// server's events. It sends no requests; it lists the windows that the caller must query.
class MirrorState {
  public:
    /// Numbers that the server assigns. Set them before the first event.
    struct Server {
        xcb_window_t root = 0;
        /// Atoms of the properties that define a window's role on the desktop.
        std::vector<xcb_atom_t> atoms;
        // First events and the opcode of extensions; 0 if the extension is missing.
        std::uint8_t xkbEvent = 0;
        std::uint8_t inputOpcode = 0;
    };
    /// A child of the root window, mapped or not. Its frame is in pixels of the root window.
    struct Child {
        xcb_window_t window = 0;
        OrvelCore::Rect frame;
        bool isMapped = false;
        bool isInputOnly = false;
        bool isUnmanaged = false;  // override-redirect
        bool isResolved = false;
        bool isPanel = false;  // a panel of this program, which states its own level
        // The program's own window, which is the child itself if it has no frame; 0 if the child is
        // not managed.
        xcb_window_t client = 0;
        std::int64_t pid = 0;
        std::int64_t layer = 0;
        bool isHidden = false;
        std::array<double, 4> shadow{};  // left, right, top, bottom, in pixels
    };

    /// Includes the border, which X does not count as part of the width and height.
    static OrvelCore::Rect frameOf(const auto& geometry) {
        const double border = 2.0 * geometry.border_width;
        return {static_cast<double>(geometry.x), static_cast<double>(geometry.y),
                geometry.width + border, geometry.height + border};
    }

    Server server;

    /// Sets the root's children, bottom first. `sequence` is the number of the request that
    /// returned them.
    void setTree(const std::vector<xcb_window_t>& windows, unsigned sequence);
    void handle(const xcb_generic_event_t& event);
    void takeInputs(unsigned modifiers, unsigned buttons);

    /// Bottom first. References to children stay valid as long as these exist.
    using Children = std::list<Child>;
    const Children& children() const { return children_; }
    /// The place in `children`; its end if there is no such child.
    Children::const_iterator placeOf(xcb_window_t window) const;
    /// Null if there is no such child.
    Child* find(xcb_window_t window);
    /// Resolves `child` again after an event of `window`, which is `child` or a window inside it.
    void follow(xcb_window_t window, xcb_window_t child) { parents_[window] = child; }

    /// Returns each child to query once, and marks all of them as queried.
    std::vector<xcb_window_t> takeUnresolved();
    bool hasUnresolved() const { return !unresolved_.empty(); }

    /// The windows on the screen, frontmost first.
    std::vector<OrvelCore::WindowInfo> windows() const;
    const ScreenState::Inputs& inputs() const { return inputs_; }

  private:
    void handleInput(const xcb_generic_event_t& event);
    void restack(xcb_window_t window, xcb_window_t above);
    void remove(xcb_window_t window);

    void add(const Child& child);

    Children children_;
    std::unordered_map<xcb_window_t, Children::iterator> places_;
    // maps a followed window to its child of the root
    std::unordered_map<xcb_window_t, xcb_window_t> parents_;
    std::vector<xcb_window_t> unresolved_;
    std::optional<unsigned> treeSequence_;  // set while events from before may arrive
    ScreenState::Inputs inputs_;
    unsigned modifiers_ = 0;      // currently pressed
    bool pressedBefore_ = false;  // `keyPressed` before the latest press
};

}  // namespace OrvelSystem
