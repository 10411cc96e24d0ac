#pragma once

#include <functional>

#include "OrvelApp/AppSystem.h"

namespace OrvelApp {

/// The parts of an `AppSystem` that are made of the modules' live forms in the same way on several
/// platforms. The arguments that are references must outlive them.
namespace SharedForms {

/// For a window server that reports the windows of other programs. Without `activateOrvel` and
/// `orvelIsActive` of the lock of apps.
CoverSystem covers(OrvelSystem::MainLoop& loop, OrvelAuth::PasswordVerifying& verifier,
                   std::function<bool()> reduceTransparency);

decltype(ModeSystem::quickBlur) quickBlur(OrvelSystem::MainLoop& loop);
decltype(ModeSystem::focusBlur) focusBlur(OrvelSystem::MainLoop& loop);

/// Without the status item, its panel, `fullKeyboardAccess` and `quit`.
MenuSystem menu();
/// Without `recorderHooks`. `quit` quits the program as the user does.
WindowSystem windows(OrvelSystem::MainLoop& loop, OrvelCore::SettingsStore& defaults,
                     std::function<void()> quit);

}  // namespace SharedForms

}  // namespace OrvelApp
