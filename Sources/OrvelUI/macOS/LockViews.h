#pragma once

#include <functional>
#include <optional>

#import <AppKit/AppKit.h>

#include "OrvelUI/LockCardModel.h"
#include "OrvelUI/NotchMetrics.h"

/// A transparent view on top of a cover.
@protocol OrvelPlacedView
/// The view's rectangle in an area of that size, such as a display, in points from the top left of
/// the area.
- (NSRect)placementIn:(NSSize)area;
@end

/// The views of locks, which are dark in any appearance. The model must outlive them.
namespace OrvelUI {

/// The card of the screen lock. It opens when it is first shown.
NSView<OrvelPlacedView>* makeLockScreenContent(LockCardModel& model,
                                               std::optional<NotchMetrics> notch);
/// The pill that the other displays show.
NSView<OrvelPlacedView>* makeSecondaryDisplayPill(LockCardModel& model,
                                                  std::optional<NotchMetrics> notch);
/// The badge of a locked app. `onTap` is called for a click on the closed badge, `onCancel` for
/// Escape in the open one. Both are called in a later turn of the loop, so they may replace the
/// view.
NSView<OrvelPlacedView>* makeAppLockBadge(LockCardModel& model, bool unlocking,
                                          std::function<void()> onTap,
                                          std::function<void()> onCancel);

}  // namespace OrvelUI
