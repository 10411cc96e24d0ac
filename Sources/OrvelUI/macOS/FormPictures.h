#pragma once

#import <AppKit/AppKit.h>

#include "OrvelUI/Form.h"
#include "OrvelUI/FormColors.h"
#import "OrvelUI/macOS/Controls.h"

/// The drawn controls of forms. Their handlers stay connected as long as `keeper` exists.
namespace OrvelUI::CocoaControls {

NSView* miniDesktop(const MiniDesktop& content);
NSView* menuBarDrawing(const MenuBarDrawing& content);
NSView* pageDots(const PageDots& dots, const FormColors& colors);
NSView* pulsingKeycaps(const PulsingKeycaps& content, const FormColors& colors);
NSView* styleThumbnails(const StyleThumbnails& content, const FormColors& colors,
                        OrvelActionView* keeper);
NSView* cornerPicker(const CornerPicker& content, const FormColors& colors,
                     OrvelActionView* keeper);

}  // namespace OrvelUI::CocoaControls
