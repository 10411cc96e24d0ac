#pragma once

#include <functional>

#import <AppKit/AppKit.h>

#include "OrvelUI/MenuPanelContent.h"

/// One row of the panel. A click anywhere in it triggers its control; the buttons in it are
/// separate views.
@interface OrvelMenuPanelRowView : NSControl
- (instancetype)initWithContent:(const OrvelUI::MenuPanelRow&)content
                        perform:(std::function<void(const OrvelUI::MenuPanelAction&)>)perform;
@end
