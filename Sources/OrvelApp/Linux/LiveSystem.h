#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "OrvelApp/AppSystem.h"
#include "OrvelApp/Linux/SessionForms.h"
#include "OrvelAuth/Linux/ExtraQuestions.h"
#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"
#include "OrvelSystem/DisplayAwake.h"
#include "OrvelSystem/JSONSettingsStore.h"
#include "OrvelSystem/Linux/LogindInhibitor.h"
#include "OrvelSystem/Linux/SessionKind.h"
#include "OrvelSystem/Qt/QtMainLoop.h"
#include "OrvelSystem/SessionEvents.h"
#include "OrvelSystem/SoundPlayer.h"

namespace OrvelApp {

/// The platform objects that live as long as the program, and the `AppSystem` made of them. Needs a
/// `QApplication` on the session's window system.
class LiveSystem {
  public:
    LiveSystem(bool asLoginItem, OrvelSystem::SessionKind kind);

    AppSystem appSystem();
    OrvelSystem::MainLoop& loop() { return loop_; }
    /// The user chose to quit from the menu.
    std::function<void()> onQuit = [] {};
    /// The program must end although the screen is locked.
    std::function<void()> onLeave = [] {};
    /// The program must quit and be started again with these URLs.
    std::function<void(std::vector<std::string> urls)> onRestart = [](const auto&) {};

  private:
    void passwordAnswered(const OrvelAuth::PasswordResult& result);
    ModeSystem modeSystem();
    MenuSystem menuSystem();
    WindowSystem windowSystem();

    bool asLoginItem_;
    std::string userName_;
    OrvelSystem::QtMainLoop loop_;
    OrvelSystem::JSONSettingsStore defaults_;
    OrvelCore::LockMarkerStore markers_;
    OrvelAuth::OpenDirectoryPasswordVerifier verifier_;
    OrvelAuth::ExtraQuestions::Memory extraQuestions_;
    std::function<void(const std::string&)> moreWasAsked_ = [](const std::string&) {};
    SessionForms forms_;
    OrvelSystem::DisplayAwake displayAwake_;
    std::optional<OrvelSystem::LogindInhibitor> sleepDelay_;
    OrvelSystem::SessionEvents events_;
    OrvelSystem::SoundPlayer sounds_;
};

}  // namespace OrvelApp
