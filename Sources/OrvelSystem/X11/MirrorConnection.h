#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelSystem/X11/MirrorState.h"
#include "OrvelSystem/X11/ScreenState.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

/// The X side of the mirror: a separate connection that tracks the root window's children by
/// events. Use it on one thread at a time.
class MirrorConnection {
  public:
    /// Connects and takes a first snapshot. `levelProperty` is the property in which a panel of
    /// this program states its level.
    explicit MirrorConnection(std::string_view levelProperty);
    ~MirrorConnection();
    MirrorConnection(const MirrorConnection&) = delete;
    MirrorConnection& operator=(const MirrorConnection&) = delete;

    /// False if the connection could not be opened or has been lost.
    bool isAlive() const;
    /// The connection's file descriptor, for `poll`.
    int descriptor() const;
    const ScreenState& screen() const { return screen_; }
    /// Processes some of the events that have arrived. Returns whether `screen` has changed.
    bool handleEvents();
    /// Whether more events have arrived, possibly without the descriptor becoming readable.
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
    bool hasClientIDs_ = false;
    ScreenState screen_;
};

}  // namespace OrvelSystem
