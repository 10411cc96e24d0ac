#pragma once

#include "Desktop.h"

namespace DesktopTest {

/// The session's own locker, a real one: xss-lock, which starts a locker when logind asks for a
/// lock and tells logind what became of it. Given as shell commands, so that it may also fail.
class SessionLocker {
  public:
    static constexpr const char* i3lock = "exec i3lock -n -c 203040";
    static constexpr const char* xsecurelock =
        "XSECURELOCK_PAM_SERVICE=i3lock XSECURELOCK_DISCARD_FIRST_KEYPRESS=0 exec xsecurelock";

    /// Returns once xss-lock is known to listen.
    explicit SessionLocker(Desktop& desktop, const std::string& commands = i3lock);

    /// How often it was started, and how often it has ended.
    int starts() const { return count("starts"); }
    int ends() const { return count("ends"); }
    /// Whether i3lock or xsecurelock stands on top of everything, on all displays.
    bool isOn();
    /// Whether xss-lock has told logind, which it does first and last of all.
    bool isLocked() { return desktop_.logind().lockedHint(); }
    /// Types the password into it.
    bool unlock();

  private:
    void run(const std::string& commands);
    int count(const std::string& what) const;

    Desktop& desktop_;
    Colour colour_;
};

}  // namespace DesktopTest
