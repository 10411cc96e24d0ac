#pragma once

#include "OrvelApp/Linux/SessionForms.h"
#include "OrvelAuth/PasswordVerifying.h"

namespace OrvelApp {

/// Needs a `QApplication` on X11. What it refers to outlives the forms.
SessionForms makeX11Forms(OrvelSystem::MainLoop& loop, OrvelAuth::PasswordVerifying& verifier);

}  // namespace OrvelApp
