#pragma once

#include <memory>

#include "OrvelModes/StatusItem/StatusItem.h"
#include "OrvelModes/StatusItem/StatusMenu.h"

namespace OrvelModes {

/// Makes the item in the system's menu bar: a click calls `onClick`, a right click shows the menu.
/// The menu must outlive the item.
std::unique_ptr<StatusItem> makeLiveStatusItem(StatusMenuController& menu);

}  // namespace OrvelModes
