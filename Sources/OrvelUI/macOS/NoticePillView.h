#pragma once

#include <functional>
#include <optional>

#import <AppKit/AppKit.h>

#include "OrvelUI/NotchMetrics.h"
#include "OrvelUI/NoticePill.h"
#import "OrvelUI/macOS/LockViews.h"

/// One notice in a pill at the top of a display.
@interface OrvelNoticePillView : NSView <OrvelPlacedView>
/// `onTap` is called in a later turn of the loop, so it may replace the view; empty for none.
- (instancetype)initWithContent:(const OrvelUI::NoticePillContent&)content
                          notch:(std::optional<OrvelUI::NotchMetrics>)notch
                          onTap:(std::function<void()>)tap;
/// Fades out `after` seconds from now, within `seconds`. It takes no taps after that.
- (void)fadeOutAfter:(double)after seconds:(double)seconds;
@end

namespace OrvelUI {

/// `nullopt` if `screen` is nil or has no notch.
std::optional<NotchMetrics> notchOf(NSScreen* screen);

}  // namespace OrvelUI
