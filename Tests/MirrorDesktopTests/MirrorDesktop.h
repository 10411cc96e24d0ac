#pragma once

#include <atomic>
#include <optional>
#include <vector>

#include <gmock/gmock.h>

#include "OrvelSystem/Linux/WindowServerMirror.h"

#include "Desktop/Process.h"
#include "Desktop/Screen.h"

/// A mirror in this process of a screen of 800 by 600, which a second client changes and asks.
class MirrorTest : public testing::Test {
  protected:
    MirrorTest();
    ~MirrorTest() override;

    /// Starts openbox, which puts windows into frames.
    void startWindowManager();
    DesktopTest::Environment environment() const;

    /// A window of the second client, which is not on the screen yet.
    xcb_window_t make(DesktopTest::Area area, bool overridesRedirect = false);
    void map(xcb_window_t window);
    void setProperty(xcb_window_t window, std::string_view name, xcb_atom_t type,
                     const std::vector<std::uint32_t>& values);
    /// Asks the window manager for something.
    void ask(xcb_window_t window, std::string_view message,
             const std::vector<std::uint32_t>& values);
    /// The root's child that holds the window.
    xcb_window_t outermost(xcb_window_t window);

    /// What is on the screen by the server's own word: numbers and bounds.
    std::vector<OrvelCore::WindowInfo> asked();
    bool mirrorAgrees();
    /// What the mirror has of the frame of `window`; nothing while it is not on the screen.
    std::optional<OrvelCore::WindowInfo> mirrored(xcb_window_t window);

    DesktopTest::Screen screen;
    OrvelSystem::WindowServerMirror mirror;
    std::atomic<int> changes = 0;

  private:
    std::optional<DesktopTest::Process> windowManager_;
    std::vector<xcb_window_t> windows_;
    std::shared_ptr<void> observation_;
};
