#pragma once

#include <functional>
#include <string>
#include <vector>

#include "OrvelApp/AppSystem.h"
#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"
#include "OrvelSystem/DisplayAwake.h"
#include "OrvelSystem/SessionEvents.h"
#include "OrvelSystem/SoundPlayer.h"
#include "OrvelSystem/macOS/CarbonHotkeys.h"
#include "OrvelSystem/macOS/DispatchMainLoop.h"
#include "OrvelSystem/macOS/UserDefaultsStore.h"

namespace OrvelApp {

/// The platform objects that live as long as the program, and the `AppSystem` made of them. Needs
/// the shared application.
class LiveSystem {
  public:
    explicit LiveSystem(bool asLoginItem);

    AppSystem appSystem();

  private:
    CoverSystem coverSystem();
    ModeSystem modeSystem();
    MenuSystem menuSystem();
    WindowSystem windowSystem();

    bool asLoginItem_;
    std::string userName_;
    OrvelSystem::DispatchMainLoop loop_;
    OrvelSystem::UserDefaultsStore defaults_;
    OrvelCore::LockMarkerStore markers_;
    OrvelAuth::OpenDirectoryPasswordVerifier verifier_;
    OrvelSystem::CarbonHotkeys hotkeys_;
    OrvelSystem::DisplayAwake displayAwake_;
    OrvelSystem::SessionEvents events_;
    OrvelSystem::SoundPlayer sounds_;
};

}  // namespace OrvelApp
