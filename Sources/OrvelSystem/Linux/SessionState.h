#pragma once

#include <memory>

#include "OrvelCore/Lifetime.h"
#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

class FollowedProperties;

/// The state of this program's session in logind, cached so that reading it never blocks. Main
/// thread only.
class SessionState {
  public:
    SessionState();
    ~SessionState();

    /// Whether a locker has reported that the session is locked, or another session is active.
    /// False until the state has been read, and without logind.
    bool isLockedOrAway() const;

  private:
    void findSession();

    std::unique_ptr<FollowedProperties> properties_;  // null until the session is found
    DBus::Subscription owner_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelSystem
