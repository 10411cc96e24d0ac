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
    /// `changed` is called when the state may have changed, `lockRequested` when logind asks the
    /// session to lock itself. Both may destroy this object.
    explicit SessionState(
        std::function<void()> changed = [] {}, std::function<void()> lockRequested = [] {});
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
    std::function<void()> lockRequested_;
    std::unique_ptr<DBusPropertyCache> properties_;  // null until the session is found
    OrvelCore::Subscription owner_;
    OrvelCore::Subscription request_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelSystem
