#pragma once

#include <functional>
#include <memory>

#include "OrvelCore/Lifetime.h"
#include "OrvelCore/WeakList.h"
#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

class DBusPropertyCache;

/// The state of this program's session in logind, cached so that reading it never blocks. Main
/// thread only.
class SessionState {
  public:
    /// `changed` is called when the state may have changed. It may destroy this object.
    explicit SessionState(std::function<void()> changed = [] {});
    ~SessionState();
    SessionState(const SessionState&) = delete;
    SessionState& operator=(const SessionState&) = delete;

    /// The manager of logind.
    static const DBus::Object& manager();

    /// Whether a locker has reported that the session is locked. False until the state has been
    /// read, and without logind.
    bool isLocked() const;

    /// Also true while another session is active.
    bool isLockedOrAway() const;

  private:
    void findSession();

    std::function<void()> changed_;
    std::unique_ptr<DBusPropertyCache> properties_;  // null until the session is found
    OrvelCore::Subscription owner_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelSystem
