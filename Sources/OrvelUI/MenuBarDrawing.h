#pragma once

#include <string>
#include <string_view>

namespace OrvelUI {

/// A drawing of the menu bar that shows where the program's icon is, or that there was no space for
/// it.
struct MenuBarDrawing {
    static constexpr std::string_view clock = "9:41";

    bool hidden = false;

    std::string label() const;
    bool operator==(const MenuBarDrawing&) const = default;
};

}  // namespace OrvelUI
