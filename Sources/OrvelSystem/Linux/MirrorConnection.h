#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelSystem/Linux/ScreenPicture.h"
#include "OrvelSystem/Linux/X11.h"

namespace OrvelSystem {

/// The X side of the mirror: a connection of its own that follows the root's children event by
/// event. For one thread at a time.
class MirrorConnection {
  public:
    /// Connects and takes a first picture. `levelProperty` is where a panel of this program states
    /// its level.
    explicit MirrorConnection(std::string_view levelProperty);
    ~MirrorConnection();
    MirrorConnection(const MirrorConnection&) = delete;
    MirrorConnection& operator=(const MirrorConnection&) = delete;

    bool isAlive() const;
    int descriptor() const;
    const ScreenPicture& picture() const { return picture_; }
    /// Takes in a share of what has arrived. Whether the picture is another one now.
    bool handleEvents();
    /// More has arrived, or may have without the descriptor telling.
    bool mayHaveMore() const { return mayHaveMore_; }

  private:
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
    enum Atom {
        wmState,
        netPID,
        netType,
        netState,
        frameExtents,
        typeDesktop,
        typeDock,
        stateAbove,
        stateHidden,
        stateShaded,
        level,
        atomCount
    };

    void internAtoms(std::string_view levelProperty);
    void openExtensions();
    void readTree();
    void readInputs();
    void resolve(const std::vector<xcb_window_t>& windows);
    void handle(const xcb_generic_event_t& event);
    void handleInput(const xcb_generic_event_t& event);
    void takeInputs(unsigned modifiers, unsigned buttons);
    void watchKeys(bool watch);
    void restack(xcb_window_t window, xcb_window_t above);
    void remove(xcb_window_t window);
    Child* find(xcb_window_t window);
    bool takePicture();

    xcb_connection_t* connection_;
    xcb_window_t root_ = 0;
    std::int64_t ownPID_;
    std::string hostName_;
    std::array<xcb_atom_t, atomCount> atoms_{};
    std::vector<Child> children_;                             // bottom first
    std::unordered_map<xcb_window_t, xcb_window_t> parents_;  // child of the root, by client
    std::vector<xcb_window_t> unresolved_;
    std::optional<unsigned> treeSequence_;  // while events from before may come
    bool displaysChanged_ = false;
    bool mayHaveMore_ = false;
    std::uint8_t xkbEvent_ = 0;
    std::uint8_t inputOpcode_ = 0;
    std::uint8_t randrEvent_ = 0;
    bool hasMonitors_ = false;
    bool hasClientIDs_ = false;
    ScreenPicture picture_;
};

}  // namespace OrvelSystem
