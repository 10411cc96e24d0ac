#pragma once

#include <functional>

#import <AppKit/AppKit.h>

#include "OrvelUI/MenuPanelContent.h"

/// A part of a row that can be pressed on its own.
@interface OrvelMenuPanelButtonView : NSControl
- (instancetype)initWithContent:(const OrvelUI::MenuPanelButton&)content
                        perform:(std::function<void(const OrvelUI::MenuPanelAction&)>)perform;
@end

namespace OrvelUI {

/// What is read out for a control of the panel.
void describe(NSControl* view, const MenuPanelControl& control);

}  // namespace OrvelUI
