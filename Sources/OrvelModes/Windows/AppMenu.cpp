#include "OrvelModes/Windows/AppMenu.h"

namespace OrvelModes {

AppMenu AppMenu::make() {
    constexpr auto command = OrvelCore::Shortcut::Modifiers::command;
    constexpr auto shift = OrvelCore::Shortcut::Modifiers::shift;
    return {.title = "Edit",
            .rows = {{"Undo", "undo:", "z", command},
                     {"Redo", "redo:", "z", command | shift},
                     {},
                     {"Cut", "cut:", "x", command},
                     {"Copy", "copy:", "c", command},
                     {"Paste", "paste:", "v", command},
                     {"Select All", "selectAll:", "a", command}}};
}

}  // namespace OrvelModes
