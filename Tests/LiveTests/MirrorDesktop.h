#pragma once

#include "OrvelSystem/X11/WindowServerMirror.h"

#include "Live.h"

/// A mirror in this process of the screen, which a second client changes and asks.
class MirrorTest : public LiveTest {
  protected:
    MirrorTest();
    ~MirrorTest() override;

    /// A window of the second client, which is not on the screen yet.
    xcb_window_t make(DesktopTest::Area area, bool overridesRedirect = false);
    void map(xcb_window_t window);
    void setProperty(xcb_window_t window, std::string_view name, xcb_atom_t type,
                     const std::vector<std::uint32_t>& values);
    /// Asks the window manager for something.
    void ask(xcb_window_t window, std::string_view message,
             const std::vector<std::uint32_t>& values);

    /// What is on the screen by the server's own word: numbers and bounds.
    std::vector<OrvelCore::WindowInfo> asked();
    bool mirrorAgrees();
    /// What the mirror has of the frame of `window`; nothing while it is not on the screen.
    std::optional<OrvelCore::WindowInfo> mirrored(xcb_window_t window);

    OrvelSystem::WindowServerMirror mirror;
    std::atomic<int> changes = 0;

  private:
    std::vector<xcb_window_t> windows_;
    std::shared_ptr<void> observation_;
};
