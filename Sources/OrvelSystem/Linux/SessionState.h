#pragma once

#include <memory>

#include "OrvelCore/Lifetime.h"
#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

class FollowedProperties;

/// Where the session of this program stands with logind, followed without waiting. Main thread
/// only.
class SessionState {
  public:
    SessionState();
    ~SessionState();

    /// A locker has said that it is on, or another session is on the console. False until it is
    /// known, and without logind.
    bool isLockedOrAway() const;

  private:
    void findSession();

    std::unique_ptr<FollowedProperties> properties_;  // null while the session is not found
    DBus::Subscription owner_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelSystem
