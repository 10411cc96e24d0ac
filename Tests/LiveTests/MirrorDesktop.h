#pragma once

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/X11/WindowServerMirror.h"

#include "Live.h"

/// A mirror of the screen in this process; a second client changes the screen and queries it.
class MirrorTest : public LiveTest {
  protected:
    MirrorTest();
    ~MirrorTest() override;

    /// Creates an unmapped window of the second client.
    xcb_window_t make(Area area, bool overridesRedirect = false);
    void map(xcb_window_t window);
    void setProperty(xcb_window_t window, std::string_view name, xcb_atom_t type,
                     const std::vector<std::uint32_t>& values);

    /// The numbers and bounds of the windows on the screen according to the server.
    std::vector<WindowInfo> asked();
    bool mirrorAgrees();
    /// The mirror's entry for the frame of `window`; empty while it is not on the screen.
    std::optional<WindowInfo> mirrored(xcb_window_t window);

    WindowServerMirror mirror;
    std::atomic<int> changes = 0;

  private:
    std::vector<xcb_window_t> windows_;
    Subscription observation_;
};
