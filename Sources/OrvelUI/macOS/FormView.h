#pragma once

#import <AppKit/AppKit.h>

#include "OrvelUI/Form.h"
#include "OrvelUI/FormColors.h"

/// Draws a form, whatever is in it, and scrolls what is too long. A row that has not changed, or
/// whose text is being edited, keeps its view and with it the keyboard.
@interface OrvelFormView : NSScrollView
- (void)setContent:(const OrvelUI::FormContent&)content colors:(const OrvelUI::FormColors&)colors;
@end

namespace OrvelUI {

/// As the user asks programs to look at present.
SettingsTheme currentTheme();

}  // namespace OrvelUI
