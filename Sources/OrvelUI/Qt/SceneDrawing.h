#pragma once

#include "OrvelUI/DesktopScene.h"
#include "OrvelUI/FormColors.h"
#include "OrvelUI/Qt/Drawing.h"

/// Draws the small pictures of a desktop. All lengths are in points.
namespace OrvelUI::Drawing {

/// Draws the standard desktop under a cover, with rounded corners.
void lockedScene(QPainter& painter, const QRectF& rect, double radius, const SceneCover& cover);

/// Draws an app's icon, or the generic app symbol if `icon` is null.
void appIcon(QPainter& painter, const std::shared_ptr<const OrvelSystem::Picture>& icon,
             const QRectF& rect, const FormColors& colors);

}  // namespace OrvelUI::Drawing
