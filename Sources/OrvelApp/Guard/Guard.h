#pragma once

#include <functional>
#include <optional>
#include <string>

#include "OrvelCore/GuardPolicy.h"
#include "OrvelCore/LockMarker.h"

namespace OrvelApp {

/// The crash guard without its surroundings: told what becomes of the app, it reads the marker,
/// decides and acts.
class Guard {
  public:
    /// `clock` gives seconds that go on while the machine sleeps.
    Guard(OrvelCore::LockMarkerStore markers, std::string bootSession,
          OrvelCore::GuardResponder responder, std::function<double()> clock);

    /// Both return what was done.
    OrvelCore::GuardAction started(bool orvelRunning);
    OrvelCore::GuardAction orvelExited();

  private:
    OrvelCore::GuardAction perform(OrvelCore::GuardAction action, double now);

    OrvelCore::LockMarkerStore markers_;
    std::string bootSession_;
    OrvelCore::GuardResponder responder_;
    std::function<double()> clock_;
    std::optional<double> lastRelaunch_;
};

}  // namespace OrvelApp
