#pragma once

#include "OrvelCore/Looks.h"
#include "OrvelUI/DesktopScene.h"
#include "OrvelUI/FormColors.h"
#include "OrvelUI/Qt/Drawing.h"

/// Draws the small pictures of a desktop. All lengths are in points.
namespace OrvelUI::Drawing {

/// What covers the desktop of a picture.
struct SceneCover {
    OrvelCore::OverlayLook look;
    /// 0 to 1: `progress` is the strength of the cover, `card` the opacity of the lock's card.
    double progress = 1;
    double card = 0;
    bool showsClock = false;
    /// The card contains the word "Locked" and the fingerprint symbol.
    bool speaks = false;
};

/// Draws the standard desktop under a cover, with rounded corners.
void lockedScene(QPainter& painter, const QRectF& rect, double radius, const SceneCover& cover);

/// Draws an app's icon, or the generic app symbol if `icon` is null.
void appIcon(QPainter& painter, const std::shared_ptr<const OrvelSystem::Picture>& icon,
             const QRectF& rect, const FormColors& colors);

}  // namespace OrvelUI::Drawing
