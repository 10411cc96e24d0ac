#pragma once

#include "OrvelModes/Linux/LiveStatusItem.h"

namespace OrvelModes {

/// What a status item needs to know of an X11 desktop.
StatusItemDesktop x11StatusItemDesktop();

}  // namespace OrvelModes
