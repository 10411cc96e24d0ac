#pragma once

#include "OrvelApp/Linux/SessionForms.h"
#include "OrvelAuth/PasswordVerifying.h"

namespace OrvelApp {

/// Needs a `QApplication` on Wayland. The arguments must outlive the forms.
SessionForms makeWaylandForms(OrvelSystem::MainLoop& loop, OrvelAuth::PasswordVerifying& verifier);

}  // namespace OrvelApp
