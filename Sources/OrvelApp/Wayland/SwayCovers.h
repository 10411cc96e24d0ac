#pragma once

#include <memory>

#include "OrvelApp/AppSystem.h"
#include "OrvelSystem/Wayland/Compositor.h"
#include "OrvelSystem/Wayland/Outputs.h"
#include "OrvelSystem/Wayland/Sway.h"

namespace OrvelApp {

/// App lock and private apps by hiding windows. The references must outlive the result.
CoverSystem swayCovers(OrvelSystem::MainLoop& loop, OrvelAuth::PasswordVerifying& verifier,
                       std::shared_ptr<OrvelSystem::Sway> sway,
                       const OrvelSystem::Compositor& compositor, OrvelSystem::Outputs& outputs);

}  // namespace OrvelApp
