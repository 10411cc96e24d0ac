#pragma once

#include <functional>
#include <memory>

#include "OrvelBlur/Qt/QtPanelContent.h"

namespace OrvelModes {

/// What says how to end the blur of a display of that width in Qt's units, and does it when tapped.
std::shared_ptr<OrvelBlur::PanelContent> makeQuickBlurPill(int width,
                                                           std::function<void()> onReveal);

}  // namespace OrvelModes
