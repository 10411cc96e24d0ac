#pragma once

#include <memory>
#include <optional>
#include <string>

#include <xcb/xcb.h>

#include "OrvelSystem/Linux/OverlayWindow.h"

namespace OrvelApp {

/// The guard's stand-in on the display of its environment: a dark window that the X server itself
/// puts up when the app's covers go with the app. While it is up it stays over everything but a
/// locker, and each key and click that no program has grabbed ends here. The app has that begin
/// earlier, so that no key gets to a program below in the moment in which the app's own grab goes.
class StandInWindow {
  public:
    StandInWindow() = default;
    StandInWindow(const StandInWindow&) = delete;
    StandInWindow& operator=(const StandInWindow&) = delete;

    /// Makes it on the display of the environment. Harmless where it is there already; without a
    /// display, or with one that does not answer, there is none.
    void make();
    /// For poll; -1 while there is none.
    int descriptor() const;
    /// Reads what the server has sent. True when there may be more, which poll does not tell of:
    /// it came with the answer to a question. One step at a time, since a desktop with much going
    /// on must not keep the guard from its work.
    bool handleEvents();
    /// Waits for something to read, for a few milliseconds at most.
    void awaitEvents() const;

    /// Whether it covers the screen, since an app that had taken it is gone and none has taken it
    /// over.
    bool isUp() const { return isUp_; }
    /// Whether the owner has pressed Return while it was up since this was last asked.
    bool takeReturn();
    /// One line in the middle of it; empty for none.
    void say(const std::string& text);
    void withdraw();
    /// A locker says that it has locked, so the keys are its own, even if it has not grabbed them.
    void setSystemIsLocked(bool locked);
    /// Takes the focus from nowhere, where windows that go one inside of the other may leave it:
    /// the server drops every key then, before it looks at grabs.
    void freeKeys();

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    void handle(const xcb_generic_event_t& event);
    void settle();
    void watchInput(bool watch);
    void watchStack(bool watch);
    bool lockerIsAbove(bool& isCovered) const;
    void readKeys();
    void clear() const;
    void draw() const;
    xcb_atom_t atom(const char* name) const;

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    std::string display_;
    const xcb_screen_t* screen_ = nullptr;
    xcb_window_t window_ = XCB_NONE;
    xcb_atom_t takesKeys_ = XCB_NONE;
    xcb_gcontext_t pen_ = XCB_NONE;
    // Held from the time at which the app does until a locker or the app's covers are there, and
    // drawn on like the window itself.
    std::optional<OrvelSystem::OverlayWindow> overlay_;
    std::uint8_t inputOpcode_ = 0;
    xcb_keycode_t return_ = 0;
    bool isUp_ = false;
    bool appHasKeys_ = false;  // and wants them taken when it loses them
    bool systemIsLocked_ = false;
    bool watchesInput_ = false;
    bool returnPressed_ = false;
    std::string text_;
};

}  // namespace OrvelApp
