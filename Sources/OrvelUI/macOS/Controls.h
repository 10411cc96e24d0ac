#pragma once

#include <functional>
#include <string>

#import <AppKit/AppKit.h>

#include "OrvelUI/Form.h"
#include "OrvelUI/FormColors.h"
#import "OrvelUI/macOS/StackView.h"

/// Calls a function for a control's action. Controls do not retain their targets, so the view that
/// contains the control does.
@interface OrvelActionTarget : NSObject
- (instancetype)initWithCall:(std::function<void(id sender)>)call;
- (void)act:(id)sender;
@end

/// A view that retains the targets of its controls.
@interface OrvelActionView : OrvelStackView
- (void)connect:(NSControl*)control to:(std::function<void(id sender)>)call;
/// Removes all views and releases their targets.
- (void)clear;
@end

namespace OrvelUI::CocoaControls {

NSTextField* label(const FormText& text, const FormColors& colors,
                   NSTextAlignment alignment = NSTextAlignmentLeft);
/// A button without an action.
NSButton* pushButton(const std::string& title);
NSButton* button(const FormButton& button, OrvelActionView* keeper);
/// Makes a row or a column of views; `spacing` is in points.
OrvelActionView* stack(bool vertical, double spacing);
/// Makes a view for the control, or returns nil if it has none. Its handlers stay connected as long
/// as `keeper` exists. `name` is read out if the control has no text of its own.
NSView* control(const FormControl& control, const std::string& name, const FormColors& colors,
                OrvelActionView* keeper);

}  // namespace OrvelUI::CocoaControls
