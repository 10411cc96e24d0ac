#pragma once

#include "OrvelLock/Linux/Shield.h"

namespace OrvelLock {

/// What a lock takes of an X11 desktop: the keyboard, the pointer and the top of the stack.
class X11Kiosk {
  public:
    static X11Kiosk& shared();

    void prepare() { shield_.takeStandIn(); }
    void showShield() { shield_.show(); }
    void hideShield() { shield_.hide(); }
    /// Takes both grabs, or keeps neither. Harmless while they are held. Meanwhile no other program
    /// is seen.
    bool tryGrab();
    bool holdsGrabs() const { return holdsGrabs_; }
    void ungrab();
    /// The grabs and the top of the stack again; false, and nothing is raised, when somebody else
    /// has a grab.
    bool reassert();
    void yield();

  private:
    Shield shield_;
    bool holdsGrabs_ = false;
};

}  // namespace OrvelLock
