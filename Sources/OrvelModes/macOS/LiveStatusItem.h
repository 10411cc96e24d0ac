#pragma once

#include <memory>

#include "OrvelModes/StatusItem/StatusItem.h"
#include "OrvelModes/StatusItem/StatusMenu.h"

namespace OrvelModes {

/// The item in the system's menu bar: a click tells of itself, a right click shows the menu. The
/// menu outlives the item.
std::unique_ptr<StatusItem> makeLiveStatusItem(StatusMenuController& menu);

}  // namespace OrvelModes
