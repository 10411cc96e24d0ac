#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelSystem/X11/MirrorState.h"
#include "OrvelSystem/X11/ScreenPicture.h"
#include "OrvelSystem/X11/X11.h"

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
    void watchKeys();
    xcb_window_t root() const { return state_.server.root; }
    xcb_atom_t atom(Atom name) const { return state_.server.atoms[name]; }

    xcb_connection_t* connection_;
    std::int64_t ownPID_;
    std::string hostName_;
    MirrorState state_;
    bool watchesKeys_ = false;
    bool mayHaveMore_ = false;
    bool hasMonitors_ = false;
    bool hasClientIDs_ = false;
    ScreenPicture picture_;
};

}  // namespace OrvelSystem
