#pragma once

#include <QSocketNotifier>
#include <QTimer>
#include <functional>
#include <memory>

#include "OrvelCore/WeakList.h"
#include "OrvelLock/X11/LockBackstop.h"
#include "OrvelSystem/X11/InputDevices.h"
#include "OrvelSystem/X11/InputNet.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelLock {

/// What a lock takes from an X11 desktop: the keyboard, the pointer and the top of the stacking
/// order.
///
/// The keyboard is usually taken with core grabs. If another client has them, as a program with an
/// open menu does, the hardware devices are taken first, the menu is closed, and the core grabs
/// succeed a few tens of milliseconds later. A client that keeps its core grabs still loses the
/// devices; their keys are then translated for the card.
class X11Kiosk {
  public:
    static X11Kiosk& shared();

    /// Call before the covers come up.
    void prepare();
    void showBackstop() { backstop_.show(); }
    void hideBackstop();
    /// Takes one step towards the keyboard. Repeat until it returns true: every key of the hardware
    /// then reaches this program, and further steps follow by themselves. Harmless after that. It
    /// takes nothing from another program's locker that is on top.
    bool take();
    bool hasKeys() const;
    void giveBack();
    /// Takes the keyboard and the top of the stack again. Without the keyboard it raises nothing
    /// and returns false.
    bool reassert();
    /// Whether every end of what this holds is reported, so that `reassert` need not be called
    /// until `onDisturbed` is.
    bool reportsLosses() const;
    /// Lets a locker take the keyboard. Meanwhile no key reaches any other program.
    void yield();
    /// Whether a locker holds the keyboard and covers the screen; only meaningful after `yield`.
    bool isHeldByLocker();

    /// Called when something may have taken the keyboard away or ended a locker.
    std::function<void()> onDisturbed = [] {};
    /// Called with whether a lock may take the devices. This program must then release its own
    /// passive device grabs: they would prevent those of the guard, and take a key from a device
    /// that is held.
    std::function<void(bool needs)> onNeedsDevices = [](bool) {};

  private:
    /// Stages of taking the devices while the core grabs are refused.
    enum class Stage { none, escapePressed, buttonsReleased, allTaken };

    X11Kiosk();
    bool takeCore();
    bool grabCore();
    void takeDevices();
    void tookKeys();
    void holdCompositeOverlay();
    void releaseCompositeOverlay();
    void tellGuard();
    void putUpNet();
    void holdForLocker();
    void tendYield();
    bool lockerCovers() const;
    bool keyboardIsGrabbedByOther() const;
    void handle(const xcb_generic_event_t& event);
    void passOn(const OrvelSystem::InputDevices::Key& key);

    LockBackstop backstop_;
    OrvelSystem::InputDevices devices_;
    OrvelSystem::InputNet net_;  // only up without the guard's
    std::unique_ptr<QSocketNotifier> grabs_;
    bool hasCore_ = false;
    bool isYielding_ = false;
    bool holdsCompositeOverlay_ = false;
    bool rivalHasKeys_ = false;  // while yielding: a client that is no locker has the core grabs
    double lockerCameAt_ = 0;    // seconds of uptime; 0 while no locker covers the screen
    Stage stage_ = Stage::none;
    double stageBegan_ = 0;  // seconds of uptime
    QTimer next_;            // the next step of `take`
    QTimer attach_;          // attaches the devices once the core grabs are there
    QTimer locker_;          // while yielding, until a locker has the keyboard
    QTimer disturbed_;       // merges events that come together
    OrvelCore::Subscription events_;
};

}  // namespace OrvelLock
