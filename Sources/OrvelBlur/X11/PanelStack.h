#pragma once

#include <QTimer>
#include <cstdint>
#include <map>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

/// The windows that this program puts over the screen, ordered by their levels. X11 has no levels:
/// a window that another program maps or raises is on top. While a lock or Quick Blur is shown,
/// such a window is put below it at once; while only hot corners are shown, after a delay. Main
/// thread only.
class PanelStack {
  public:
    static PanelStack& shared();

    /// Adds a window of the program's own overlays, shown or not. The backdrop of a panel of a
    /// higher level shows this window if it `hides`; otherwise it shows the windows below.
    void add(xcb_window_t window, int level, bool hides = false);
    void remove(xcb_window_t window);
    bool owns(xcb_window_t window) const { return panels_.contains(window); }
    /// Whether the backdrop of `panel` must leave `window` out: a window that hides nothing, or one
    /// of the same or a higher level, which may be fading in or out.
    bool isLeftOutOf(xcb_window_t panel, xcb_window_t window) const;

    /// Puts the window on top of its level. A window at the level of other programs' windows stays
    /// below their docks and menus.
    void orderFront(xcb_window_t window);
    /// Puts the window directly above or below `sibling`, any child of the root; no effect if there
    /// is none. A window that was put above another panel follows that panel from then on.
    void orderAbove(xcb_window_t window, xcb_window_t sibling);
    void orderBelow(xcb_window_t window, xcb_window_t sibling);
    void orderOut(xcb_window_t window);
    /// Both windows must float; false otherwise.
    bool isAbove(xcb_window_t window, xcb_window_t other) const;
    /// Puts all floating panels on top of every other window again.
    void raise();

    /// Whether another program's unmanaged window is above all panels and fills a display, as a
    /// locker's does. Queries the server.
    bool foreignLockerIsOnTop() const;

    /// While yielding, other programs may be on top: for the session's own locker after a hand-off.
    void setYielding(bool yielding);

  private:
    struct Panel {
        int level = 0;
        bool hides = false;
        std::uint64_t order = 0;  // 0 while ordered out
        xcb_window_t follows = XCB_NONE;
    };

    PanelStack();
    void watch();
    void handle(const xcb_generic_event_t& event);
    void keepOnTop();
    void raise(int fromLevel);
    bool shows(int level) const;
    bool isFloating(xcb_window_t window) const;
    void orderFrontOfWindows(xcb_window_t window, int level);
    void takeFollowersAlong(xcb_window_t window);
    std::vector<xcb_window_t> topDown() const;

    std::map<xcb_window_t, Panel> panels_;
    std::uint64_t nextOrder_ = 1;
    bool isYielding_ = false;
    OrvelCore::Subscription events_;
    QTimer corners_;  // runs while hot corners may be below another window
};

}  // namespace OrvelBlur
