#include "OrvelUI/Alert.h"

#include <fmt/format.h>

#include "OrvelCore/Brand.h"

namespace OrvelUI {

using OrvelCore::Brand::name;

Alert Alert::uninstallQuestion() {
    return {.message = fmt::format("Uninstall {}?", name),
            .informative = fmt::format("{} and its settings are removed from this Mac.", name),
            .buttons = {{.title = "Uninstall", .destructive = true}, {.title = "Cancel"}}};
}

Alert Alert::leftInApplications() {
    return {.message = "Almost done",
            .informative = fmt::format("Drag {} from Applications to the Trash to finish.", name),
            .buttons = {{.title = "OK"}}};
}

}  // namespace OrvelUI
