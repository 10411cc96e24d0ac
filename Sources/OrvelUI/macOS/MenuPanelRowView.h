#pragma once

#include <functional>

#import <AppKit/AppKit.h>

#include "OrvelUI/MenuPanelContent.h"

/// One row of the panel. A click anywhere in it does what its control does; the buttons in it are
/// views of their own.
@interface OrvelMenuPanelRowView : NSControl
- (instancetype)initWithContent:(const OrvelUI::MenuPanelRow&)content
                        perform:(std::function<void(const OrvelUI::MenuPanelAction&)>)perform;
@end
