#include "OrvelUI/MenuBarDrawing.h"

#include <fmt/format.h>

#include "OrvelCore/Brand.h"

namespace OrvelUI {

std::string MenuBarDrawing::label() const {
    return fmt::format(hidden ? fmt::runtime("The menu bar, with no room for the {} icon")
                              : fmt::runtime("The menu bar, with the {} icon"),
                       OrvelCore::Brand::name);
}

}  // namespace OrvelUI
