#include "OrvelSystem/StatusItemVisibility.h"

#include "OrvelSystem/Linux/StatusNotifierWatcher.h"

namespace OrvelSystem {

std::optional<bool> StatusItemVisibility::isShown(std::int64_t /*windowNumber*/) {
    return StatusNotifierWatcher::shared().isHostRegistered();
}

}  // namespace OrvelSystem
