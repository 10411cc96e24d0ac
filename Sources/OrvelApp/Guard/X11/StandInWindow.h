#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <xcb/xcb.h>

#include "OrvelApp/Guard/X11/StandInInput.h"
#include "OrvelApp/Guard/X11/StandInText.h"
#include "OrvelSystem/Password.h"
#include "OrvelSystem/X11/LockerWindow.h"
#include "OrvelSystem/X11/OverlayWindow.h"
#include "OrvelSystem/X11/WindowRepair.h"

namespace OrvelApp {

/// The guard's stand-in on the display of its environment: a dark window that the X server itself
/// maps when it destroys the covers of an app that has ended. While it is up it stays above
/// everything except a locker, and receives each key and click that no program has grabbed. The app
/// has the guard receive them earlier, so that no key reaches a program below at the moment when
/// the app's own grab ends.
class StandInWindow {
  public:
    StandInWindow() = default;
    StandInWindow(const StandInWindow&) = delete;
    StandInWindow& operator=(const StandInWindow&) = delete;

    /// Makes the window on the display of the environment. Does nothing if it exists there already.
    /// Makes no window if there is no display or if it does not respond.
    void make();
    /// For `poll`; -1 stands for a connection that is missing.
    std::array<int, 2> descriptors() const;
    /// Reads the events that the server has sent. Returns true if more may be available without
    /// being signalled by `poll`, because they were read together with a reply. Handles one batch
    /// at a time, so that a busy desktop does not keep the guard from its other work.
    bool handleEvents();

    /// `onRose`: the window covers the screen now, because the app is gone. `onFell`: it no longer
    /// does.
    std::function<void()> onRose = [] {};
    std::function<void()> onFell = [] {};
    /// The owner has pressed Return; `typed` is what was typed before.
    std::function<void()> onEntered = [] {};

    bool isUp() const { return isUp_; }
    OrvelSystem::Password& typed() { return typed_; }
    /// Covers the screen without waiting for the server to do so. Does nothing while it is up.
    void putUp();
    /// Removes the window from the screen and releases everything that it holds.
    void withdraw();
    /// Shows one line in the middle of each display, and the typed password as asterisks below it.
    /// Empty hides both.
    void say(const std::string& text);
    /// Call it regularly while `needsTending`, and when the app starts or ends.
    void tend(bool appRuns);
    bool needsTending() const { return isUp_; }
    /// Whether the next `tend` is due in 0.1 s rather than in its own time.
    bool needsTendingSoon() const;

  private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    void makeWindow();
    void offer() const;
    void replaceWindow();
    void forget();
    void handle(const xcb_generic_event_t& event);
    void type(const StandInInput::Key& key);
    void rise();
    void fall();
    void settle();
    void freeKeys();
    void holdDevices(bool hasLocker);
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
    std::optional<StandInText> drawing_;
    // Held from the time when the app holds it until a locker or the app's covers are up. It gets
    // the same drawing as the window.
    std::optional<OrvelSystem::OverlayWindow> overlay_;
    std::optional<StandInInput> input_;
    OrvelSystem::Password typed_;
    bool isUp_ = false;
    bool appRuns_ = true;
    bool appHasKeys_ = false;  // and wants the guard to take them when the app loses them
    bool appHoldsOverlay_ = false;
    bool hasLocker_ = false;              // a locker covers the screen; only known without the app
    bool rivalHasKeys_ = false;           // a program that is not a locker has grabbed the keyboard
    std::optional<double> lockerCameAt_;  // seconds of uptime
    std::string text_;
};

}  // namespace OrvelApp
