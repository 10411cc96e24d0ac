#pragma once

#include "OrvelModes/Blur/HotCornerController.h"
#include "OrvelModes/Blur/QuickBlurSystem.h"
#include "OrvelModes/Feedback/ToastPresenter.h"
#include "OrvelModes/StatusItem/MenuPanelPresenter.h"
#include "OrvelSystem/Wayland/Compositor.h"
#include "OrvelSystem/Wayland/Outputs.h"

/// What this program shows above the windows of others, as surfaces of the layer shell. Where the
/// compositor offers none, nothing shows. What is referred to outlives the forms.
namespace OrvelModes {

/// Blur Screen, opaque: no compositor promises a blur that makes text unreadable.
QuickBlurSystem waylandQuickBlur(OrvelSystem::Compositor& compositor, OrvelSystem::Outputs& outputs,
                                 std::function<OrvelCore::OverlayLook()> look,
                                 std::function<bool()> macLocked);
/// Notices on the first output.
ToastSystem waylandToasts(OrvelSystem::Compositor& compositor, OrvelSystem::Outputs& outputs);
/// The panel closes on a click beside it, which goes no further.
MenuPanelSystem waylandMenuPanel(OrvelSystem::Compositor& compositor,
                                 OrvelSystem::Outputs& outputs);
std::unique_ptr<CornerPanel> makeLayerCorner(OrvelSystem::Compositor& compositor,
                                             OrvelSystem::Outputs& outputs);

}  // namespace OrvelModes
