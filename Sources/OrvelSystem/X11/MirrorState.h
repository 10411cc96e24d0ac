#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelSystem/X11/ScreenPicture.h"

namespace OrvelSystem {

/// What the X server's events tell of the root's children, the pointer and the modifier keys. It
/// asks nobody: of what only an answer can tell, it says which windows are to be asked about.
class MirrorState {
  public:
    /// What is the server's own choice. To be set before the first event.
    struct Server {
        xcb_window_t root = 0;
        /// Of the properties that tell what a window is to the desktop.
        std::vector<xcb_atom_t> atoms;
        // Of extensions; 0 without them.
        std::uint8_t xkbEvent = 0;
        std::uint8_t inputOpcode = 0;
        std::uint8_t randrEvent = 0;
    };
    /// A child of the root, on the screen or not.
    struct Child {
        xcb_window_t window = 0;
        OrvelCore::Rect frame;
        bool isMapped = false;
        bool isInputOnly = false;
        bool isUnmanaged = false;  // override-redirect
        bool isResolved = false;
        bool isPanel = false;  // of this program, with a level of its own
        // Of the program's own window, which is the child itself where nobody made a frame.
        xcb_window_t client = 0;
        std::int64_t pid = 0;
        std::int64_t layer = 0;
        bool isHidden = false;
        std::array<double, 4> shadow{};  // left, right, top, bottom
    };

    /// With its border, which is outside of what the server calls the width.
    static OrvelCore::Rect frameOf(const auto& geometry) {
        const double border = 2.0 * geometry.border_width;
        return {static_cast<double>(geometry.x), static_cast<double>(geometry.y),
                geometry.width + border, geometry.height + border};
    }

    Server server;

    /// Takes the root's children, bottom first, as they were at the request of this number.
    void setTree(const std::vector<xcb_window_t>& windows, unsigned sequence);
    void handle(const xcb_generic_event_t& event);
    void takeInputs(unsigned modifiers, unsigned buttons);

    /// Null without one.
    Child* find(xcb_window_t window);
    /// What happens to `window`, which is `child` or inside of it, may change what that is.
    void follow(xcb_window_t window, xcb_window_t child) { parents_[window] = child; }

    /// The children to ask about, each of them once. They are taken for asked about then.
    std::vector<xcb_window_t> takeUnresolved();
    bool hasUnresolved() const { return !unresolved_.empty(); }
    /// Whether the displays may have changed since this was last taken.
    bool takeDisplaysChanged();
    bool displaysChanged() const { return displaysChanged_; }

    /// Those on the screen, front-most first.
    std::vector<OrvelCore::WindowInfo> windows() const;
    const ScreenPicture::Inputs& inputs() const { return inputs_; }

  private:
    void handleInput(const xcb_generic_event_t& event);
    void restack(xcb_window_t window, xcb_window_t above);
    void remove(xcb_window_t window);

    std::vector<Child> children_;                             // bottom first
    std::unordered_map<xcb_window_t, xcb_window_t> parents_;  // child of the root, by client
    std::vector<xcb_window_t> unresolved_;
    std::optional<unsigned> treeSequence_;  // while events from before may come
    bool displaysChanged_ = true;
    ScreenPicture::Inputs inputs_;
    unsigned modifiers_ = 0;      // that are held down
    bool pressedBefore_ = false;  // `keyPressed` before the latest press
};

}  // namespace OrvelSystem
