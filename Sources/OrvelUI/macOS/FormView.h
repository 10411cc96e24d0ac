#pragma once

#import <AppKit/AppKit.h>

#include "OrvelUI/Form.h"
#include "OrvelUI/FormColors.h"

/// Draws any form, and scrolls a form that is too long. A row that has not changed, or whose text
/// is being edited, keeps its view and with it the focus.
@interface OrvelFormView : NSScrollView
- (void)setContent:(const OrvelUI::FormContent&)content colors:(const OrvelUI::FormColors&)colors;
@end

namespace OrvelUI {

/// The theme that matches the user's current settings.
SettingsTheme currentTheme();

}  // namespace OrvelUI
