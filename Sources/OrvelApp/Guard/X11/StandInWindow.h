#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <xcb/xcb.h>

#include "OrvelApp/Guard/X11/StandInInput.h"
#include "OrvelSystem/Password.h"
#include "OrvelSystem/X11/LockerWindow.h"
#include "OrvelSystem/X11/OverlayWindow.h"
#include "OrvelSystem/X11/WindowRepair.h"

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

    /// It covers the screen from now on, since the app is gone, or no longer.
    std::function<void()> onRose = [] {};
    std::function<void()> onFell = [] {};
    /// The owner has pressed Return; what was typed before is `typed`.
    std::function<void()> onEntered = [] {};

    bool isUp() const { return isUp_; }
    OrvelSystem::Password& typed() { return typed_; }
    /// Covers the screen without waiting for the server to do so. Harmless while it is up.
    void putUp();
    void withdraw();
    /// One line in the middle of each display; empty for none, and then none for the password.
    void say(const std::string& text);
    /// To be called now and then while `needsTending`, and when the app starts or ends.
    void tend(bool appRuns);
    bool needsTending() const { return isUp_ || renewals_ > 0; }

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    void makeWindow();
    void replaceWindow();
    void forget();
    void handle(const xcb_generic_event_t& event);
    void type(const StandInInput::Key& key);
    void rise();
    void fall();
    void settle();
    void freeKeys();
    void catchInput(bool isWanted);
    void tellNet();
    void watchStack(bool watch);
    void readKeys();
    void clear() const;
    void draw() const;
    OrvelSystem::WindowsAbove above() const;
    OrvelSystem::WindowState wantedState() const;
    xcb_atom_t atom(const char* name) const;

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    std::string display_;
    int screenNumber_ = 0;
    const xcb_screen_t* screen_ = nullptr;
    xcb_window_t window_ = XCB_NONE;
    xcb_atom_t takesKeys_ = XCB_NONE;
    xcb_atom_t hasNet_ = XCB_NONE;
    xcb_gcontext_t pen_ = XCB_NONE;
    // Held from the time at which the app does until a locker or the app's covers are there, and
    // drawn on like the window itself.
    std::optional<OrvelSystem::OverlayWindow> overlay_;
    std::optional<StandInInput> input_;
    OrvelSystem::Password typed_;
    bool isUp_ = false;
    bool appRuns_ = true;
    bool appHasKeys_ = false;  // and wants them taken when it loses them
    bool isRoofed_ = false;    // by the app
    int renewals_ = 0;         // of the net that are due
    std::string text_;
};

}  // namespace OrvelApp
