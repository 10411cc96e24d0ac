#pragma once

#include <string>
#include <vector>

#include "OrvelCore/Shortcut.h"

namespace OrvelModes {

/// The program's main menu: never seen, but where a platform looks for it, the keys that edit text
/// work only through it.
struct AppMenu {
    struct Row {
        std::string title;     ///< Empty for a separator.
        std::string selector;  ///< The editing command's name.
        std::string key;
        OrvelCore::Shortcut::Modifiers modifiers;
        bool operator==(const Row&) const = default;
    };

    std::string title;
    std::vector<Row> rows;

    static AppMenu make();
};

}  // namespace OrvelModes
