#pragma once

#include "OrvelModes/Blur/HotCornerController.h"
#include "OrvelModes/Blur/QuickBlurSystem.h"
#include "OrvelModes/Feedback/ToastPresenter.h"
#include "OrvelModes/StatusItem/MenuPanelPresenter.h"
#include "OrvelModes/Windows/ShortcutRecorder.h"
#include "OrvelSystem/Wayland/Compositor.h"
#include "OrvelSystem/Wayland/Outputs.h"

/// What this program shows above the windows of other programs, as surfaces of the layer shell. If
/// the compositor does not offer it, nothing is shown. The arguments must outlive the forms.
namespace OrvelModes {

/// Blur Screen. It is opaque, because no compositor guarantees a blur that makes text unreadable.
QuickBlurSystem waylandQuickBlur(OrvelSystem::Compositor& compositor, OrvelSystem::Outputs& outputs,
                                 std::function<OrvelCore::OverlayLook()> look,
                                 std::function<bool()> macLocked);
/// Notices on the first output.
ToastSystem waylandToasts(OrvelSystem::Compositor& compositor, OrvelSystem::Outputs& outputs);
/// A click outside the panel closes it and reaches no other window.
MenuPanelSystem waylandMenuPanel(OrvelSystem::Compositor& compositor,
                                 OrvelSystem::Outputs& outputs);
std::unique_ptr<CornerPanel> makeLayerCorner(OrvelSystem::Compositor& compositor,
                                             OrvelSystem::Outputs& outputs);
/// Records the keys that the compositor leaves to the window.
ShortcutRecorder::Hooks waylandShortcutRecorder(std::function<AppWindow*()> window,
                                                std::function<void()> pause,
                                                std::function<void()> resume);

}  // namespace OrvelModes
