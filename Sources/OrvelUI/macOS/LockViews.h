#pragma once

#include <functional>
#include <optional>

#import <AppKit/AppKit.h>

#include "OrvelUI/LockCardModel.h"
#include "OrvelUI/NotchMetrics.h"

/// A transparent view on top of a cover.
@protocol OrvelPlacedView
/// Where the view stands in an area of that size, such as a display, from its top left.
- (NSRect)placementIn:(NSSize)area;
@end

/// The views of locks. All are dark in any appearance. The model outlives them.
namespace OrvelUI {

/// The card of the whole-Mac lock. It opens when it is first shown.
NSView<OrvelPlacedView>* makeLockScreenContent(LockCardModel& model,
                                               std::optional<NotchMetrics> notch);
/// What every other display shows.
NSView<OrvelPlacedView>* makeSecondaryDisplayPill(LockCardModel& model,
                                                  std::optional<NotchMetrics> notch);
/// The badge of a locked app. `onTap` is called for a click on the closed badge, `onCancel` for
/// Escape in the open one, both in a later turn of the loop, so that they may replace the view.
NSView<OrvelPlacedView>* makeAppLockBadge(LockCardModel& model, bool unlocking,
                                          std::function<void()> onTap,
                                          std::function<void()> onCancel);

}  // namespace OrvelUI
