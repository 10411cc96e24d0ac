#pragma once

#include <functional>
#include <string>

#import <AppKit/AppKit.h>

#include "OrvelUI/Form.h"
#include "OrvelUI/FormColors.h"

/// Calls a function for a control's action. Controls do not keep their targets, so the view that
/// holds the control does.
@interface OrvelActionTarget : NSObject
- (instancetype)initWithCall:(std::function<void(id sender)>)call;
- (void)act:(id)sender;
@end

/// A view that keeps the targets of the controls in it.
@interface OrvelActionView : NSStackView
- (void)connect:(NSControl*)control to:(std::function<void(id sender)>)call;
/// Takes all views out, and drops their targets.
- (void)clear;
@end

namespace OrvelUI::CocoaControls {

NSTextField* label(const FormText& text, const FormColors& colors);
NSButton* button(const FormButton& button, OrvelActionView* keeper);
/// A row or a column of views.
OrvelActionView* stack(bool vertical, double spacing);
/// A view of the control, whose handlers stay connected as long as `keeper` lives; nil for none.
/// `name` is read out where the control has no text of its own.
NSView* control(const FormControl& control, const std::string& name, const FormColors& colors,
                OrvelActionView* keeper);

}  // namespace OrvelUI::CocoaControls
