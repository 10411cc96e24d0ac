#pragma once

#include <string_view>
#include <vector>

#include "OrvelUI/Path.h"

namespace OrvelUI {

/// A small vector picture in one colour, drawn by the product itself.
struct Symbol {
    /// Symbols are drawn in a square with this side length, and scaled from there.
    static constexpr double box = 24;

    struct Layer {
        Path path;
        /// The width of a stroke with round ends; 0 fills the path, with overlaps as holes.
        double stroke = 0;
        bool operator==(const Layer&) const = default;
    };
    std::vector<Layer> layers;

    /// The symbol with that name; without layers if there is none.
    static const Symbol& named(std::string_view name);

    bool operator==(const Symbol&) const = default;
};

}  // namespace OrvelUI
