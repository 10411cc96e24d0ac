#pragma once

#include <QTimer>
#include <functional>

#include "OrvelLock/X11/Shield.h"
#include "OrvelSystem/X11/InputDevices.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelLock {

/// What a lock takes of an X11 desktop: the keyboard, the pointer and the top of the stack.
///
/// The ordinary way to the keys is the core grabs. Where another client has them, as a program with
/// an open menu does, the hardware devices are taken from it first, the menu is closed, and the
/// core grabs follow within some ten milliseconds. A client that keeps its grabs loses the devices
/// all the same; their keys are then translated for the card.
class X11Kiosk {
  public:
    static X11Kiosk& shared();

    /// Before the covers come up.
    void prepare();
    void showShield() { shield_.show(); }
    void hideShield();
    /// One step on the way to the keys, to be repeated until it is true: then every key reaches
    /// this program. Harmless after that. While another program's locker is on top it has no
    /// effect.
    bool take();
    bool hasKeys() const;
    void giveBack();
    /// The keys and the top of the stack again; false, and nothing is raised, without the keys.
    bool reassert();
    /// Lets a locker take the keyboard. No key reaches any other program meanwhile.
    void yield();
    /// Whether, since `yield`, a locker holds the keyboard and covers the screen.
    bool isHeldByLocker();

    /// Something has happened that may have taken the keys away, or ended a locker.
    std::function<void()> onDisturbed = [] {};
    /// Whether the keys are to be had from the devices alone. This program's own grabs of devices
    /// would then keep the guard from its own.
    std::function<void(bool needs)> onNeedsDevices = [](bool) {};

  private:
    /// Of the way to the keys where the core grabs are refused.
    enum class Stage { none, escapePressed, buttonsReleased, allTaken };

    X11Kiosk();
    bool takeCore();
    void takeDevices();
    void tookKeys();
    void handle(const xcb_generic_event_t& event);
    void passOn(const OrvelSystem::InputDevices::Key& key);

    Shield shield_;
    OrvelSystem::InputDevices devices_;
    OrvelSystem::InputNet net_;
    bool hasCore_ = false;
    bool isYielding_ = false;
    Stage stage_ = Stage::none;
    double stageBegan_ = 0;  // seconds of uptime
    QTimer next_;            // the next step of `take`
    QTimer disturbed_;       // joins events that come together
    OrvelSystem::X11::Subscription events_;
};

}  // namespace OrvelLock
