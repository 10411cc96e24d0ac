#pragma once

#include "Desktop.h"

namespace DesktopTest {

/// A real session locker: xss-lock, which runs `commands` when logind requests a lock and then sets
/// logind's hint. Since these are shell commands, they can also be made to fail.
class SessionLocker {
  public:
    static constexpr const char* i3lock = "exec i3lock -n -c 203040";
    static constexpr const char* xsecurelock =
        "XSECURELOCK_PAM_SERVICE=i3lock XSECURELOCK_DISCARD_FIRST_KEYPRESS=0 exec xsecurelock";

    /// Returns once xss-lock is known to listen.
    explicit SessionLocker(Desktop& desktop, const std::string& commands = i3lock);

    /// How often the locker was started, and how often it has ended.
    int starts() const { return count("starts"); }
    int ends() const { return count("ends"); }
    /// Whether i3lock or xsecurelock is on top of everything on all displays.
    bool isOn();
    /// Whether xss-lock has set logind's hint.
    bool isLocked() { return desktop_.logind().lockedHint(); }
    /// Types the password into the locker.
    bool unlock();

  private:
    void run(const std::string& commands);
    int count(const std::string& what) const;

    Desktop& desktop_;
    Colour colour_;
};

}  // namespace DesktopTest
