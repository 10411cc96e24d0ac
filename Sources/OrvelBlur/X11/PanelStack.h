#pragma once

#include <QTimer>
#include <cstdint>
#include <map>
#include <vector>

#include <xcb/xcb.h>

#include "OrvelSystem/X11/X11.h"

namespace OrvelBlur {

/// The windows that this program puts over the screen, in the order of their levels. X11 has no
/// levels: whatever another program maps or raises lands on top, so while a lock or Quick Blur is
/// up it is put below again at once, and where only hot corners are, soon. Main thread only.
class PanelStack {
  public:
    static PanelStack& shared();

    /// Every window that is part of the program's own overlays, shown or not. What floats above one
    /// that `hides` shows it, and above any other shows the windows below that one.
    void add(xcb_window_t window, int level, bool hides = false);
    void remove(xcb_window_t window);
    bool owns(xcb_window_t window) const { return panels_.contains(window); }
    /// Whether what `panel` shows of the windows below it is to be without `window`: one that hides
    /// nothing, or of its own level, which may be on its way in or out.
    bool isLeftOutOf(xcb_window_t panel, xcb_window_t window) const;

    /// Puts the window on top of its level: one among the windows of other programs comes below
    /// their docks and menus.
    void orderFront(xcb_window_t window);
    /// Puts it directly above or below any child of the root; no effect where there is none of that
    /// number. What was put above another panel follows that one from then on.
    void orderAbove(xcb_window_t window, xcb_window_t sibling);
    void orderBelow(xcb_window_t window, xcb_window_t sibling);
    void orderOut(xcb_window_t window);
    /// Of two that float.
    bool isAbove(xcb_window_t window, xcb_window_t other) const;
    /// Puts all floating panels on top of every other window again.
    void raise();

    /// Whether another program's unmanaged window stands over all panels and fills a display, as
    /// that of a locker does. Asks the server.
    bool foreignLockerIsOnTop() const;

    /// Yielding lets other programs stand on top: for the session's own locker after a hand-off.
    void setYielding(bool yielding);

  private:
    struct Panel {
        int level = 0;
        bool hides = false;
        std::uint64_t order = 0;  // 0 while out
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
    OrvelSystem::X11::Subscription events_;
    QTimer corners_;  // runs while hot corners may lie below something
};

}  // namespace OrvelBlur
