#pragma once

#import <AppKit/AppKit.h>

#include "OrvelUI/DesktopScene.h"
#include "OrvelUI/MenuBarDrawing.h"

/// Draws the small pictures of a desktop, in the coordinates of a flipped view. All lengths are in
/// points.
namespace OrvelUI::CocoaDrawing {

/// The background of all these pictures, with rounded corners.
void desktopGradient(NSRect rect, double radius);
/// The standard desktop under a cover, with rounded corners.
void lockedScene(NSRect rect, double radius, const SceneCover& cover);
void menuBar(NSRect rect, const MenuBarDrawing& drawing);

}  // namespace OrvelUI::CocoaDrawing
