#include "OrvelModes/Windows/SettingsWindowController.h"

namespace OrvelModes {

void SettingsWindowController::show(std::optional<OrvelUI::SettingsPane> pane) {
    onWillShow();
    if (pane) model.pane.set(*pane);
    if (!window_) {
        window_ = system_.makeWindow(model);
        window_->center();
    }
    system_.activate();
    window_->makeKeyAndOrderFront();
}

}  // namespace OrvelModes
