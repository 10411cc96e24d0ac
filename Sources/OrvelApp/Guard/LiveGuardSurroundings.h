#pragma once

#include <optional>
#include <string>

#include "OrvelApp/Guard/Guard.h"
#include "OrvelCore/LockMarker.h"
#include "OrvelSystem/BootSession.h"

namespace OrvelApp {

/// The part of the guard's environment that is the same on every platform: the files of the user,
/// and the system's own lock.
class LiveGuardSurroundings : public GuardSurroundings {
  public:
    std::optional<OrvelCore::LockMarker> marker() const override { return markers_.read(); }
    bool mark() override;
    void clearMarker() override { markers_.clear(); }

    void engageLock() override;
    void engageLockFallback() override;
    bool systemIsLocked() override;

    void recordFailedAttempt() override;

  protected:
    const std::string& bootSession() const { return bootSession_; }
    /// Whether a marker of this boot exists.
    bool isMarked() const { return markers_.activeMarker(bootSession_).has_value(); }

  private:
    const std::string bootSession_ = OrvelSystem::BootSession::current();
    OrvelCore::LockMarkerStore markers_ = OrvelCore::LockMarkerStore::standard();
};

}  // namespace OrvelApp
