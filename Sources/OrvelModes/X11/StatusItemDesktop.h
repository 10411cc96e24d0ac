#pragma once

#include "OrvelModes/Linux/LiveStatusItem.h"

namespace OrvelModes {

/// The X11 desktop around a status item.
StatusItemDesktop x11StatusItemDesktop();

}  // namespace OrvelModes
