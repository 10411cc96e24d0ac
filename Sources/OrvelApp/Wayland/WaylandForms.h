#pragma once

#include "OrvelApp/Linux/SessionForms.h"
#include "OrvelAuth/PasswordVerifying.h"

namespace OrvelApp {

/// Needs a `QApplication` on Wayland. What it refers to outlives the forms.
SessionForms makeWaylandForms(OrvelSystem::MainLoop& loop, OrvelAuth::PasswordVerifying& verifier);

}  // namespace OrvelApp
