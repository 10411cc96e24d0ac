#pragma once

#include <functional>

#import <AppKit/AppKit.h>

#include "OrvelUI/MenuPanelContent.h"

/// A button within a row.
@interface OrvelMenuPanelButtonView : NSControl
- (instancetype)initWithContent:(const OrvelUI::MenuPanelButton&)content
                        perform:(std::function<void(const OrvelUI::MenuPanelAction&)>)perform;
@end

namespace OrvelUI {

/// Sets what is read out for a control of the panel.
void describe(NSControl* view, const MenuPanelControl& control);

}  // namespace OrvelUI
