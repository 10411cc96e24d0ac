#pragma once

#include "OrvelCore/Looks.h"
#include "OrvelUI/DesktopScene.h"
#include "OrvelUI/FormColors.h"
#include "OrvelUI/Qt/Drawing.h"

/// How the little pictures of a desktop are drawn. All lengths are points.
namespace OrvelUI::Drawing {

/// What lies over the desktop of a picture.
struct SceneCover {
    OrvelCore::OverlayLook look;
    /// 0 to 1: how far the cover has come down, and how much of the lock's card shows.
    double progress = 1;
    double card = 0;
    bool showsClock = false;
    /// The card says that it is locked, and asks for the fingerprint.
    bool speaks = false;
};

/// The standard desktop under a cover, with round corners.
void lockedScene(QPainter& painter, const QRectF& rect, double radius, const SceneCover& cover);

/// An app's icon as it comes, or the sign of an app for a null one.
void appIcon(QPainter& painter, const std::shared_ptr<const OrvelSystem::Picture>& icon,
             const QRectF& rect, const FormColors& colors);

}  // namespace OrvelUI::Drawing
