#pragma once

#include <string>
#include <string_view>

namespace OrvelUI {

/// A likeness of the menu bar: where to find the program's icon, or that there was no room for it.
struct MenuBarDrawing {
    static constexpr std::string_view clock = "9:41";

    bool hidden = false;

    std::string label() const;
    bool operator==(const MenuBarDrawing&) const = default;
};

}  // namespace OrvelUI
