#pragma once

#include <string>
#include <vector>

#include "OrvelCore/Shortcut.h"

namespace OrvelModes {

/// The program's main menu. It is never visible, but on some platforms the keys for editing text
/// work only through it.
struct AppMenu {
    struct Row {
        std::string title;     ///< Empty for a separator.
        std::string selector;  ///< The name of the editing command.
        std::string key;
        OrvelCore::Shortcut::Modifiers modifiers;
        bool operator==(const Row&) const = default;
    };

    std::string title;
    std::vector<Row> rows;

    static AppMenu make();
};

}  // namespace OrvelModes
