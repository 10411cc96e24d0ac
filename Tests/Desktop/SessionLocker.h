#pragma once

#include "Desktop.h"

namespace DesktopTest {

/// The session's own locker, a real one: xss-lock, which starts i3lock when logind asks for a lock
/// and tells logind what became of it.
class SessionLocker {
  public:
    /// Returns once it is known to listen.
    explicit SessionLocker(Desktop& desktop);

    /// Whether it stands on top of everything, on all displays.
    bool isOn();
    /// Whether it has told logind, which it does first and last of all.
    bool isLocked() { return desktop_.logind().lockedHint(); }
    /// Types the password into it.
    bool unlock();

  private:
    Desktop& desktop_;
};

}  // namespace DesktopTest
