#include "OrvelSystem/Linux/DesktopShortcuts.h"

#include "OrvelCore/Shortcut.h"

namespace OrvelSystem {

namespace {

using OrvelCore::ReservedShortcut;
using Modifiers = OrvelCore::Shortcut::Modifiers;

constexpr Modifiers super = Modifiers::command;
constexpr Modifiers alt = Modifiers::option;
constexpr Modifiers control = Modifiers::control;
constexpr Modifiers controlAlt = Modifiers::control | Modifiers::option;
constexpr Modifiers controlShift = Modifiers::control | Modifiers::shift;

// Entries of desktops precede those of programs, since a program never receives a combination that
// the desktop has taken. Super alone is missing because a modifier key cannot be recorded.
constexpr ReservedShortcut table[] = {
    {37, super, "Many desktops use this to lock the screen."},                         // L
    {48, super, "Many desktops use this to switch apps."},                             // Tab
    {50, super, "GNOME uses this to switch windows."},                                 // `
    {49, super, "GNOME uses this to switch input sources."},                           // Space
    {2, super, "Many desktops use this to show the desktop."},                         // D
    {35, super, "Many desktops use this to switch displays."},                         // P
    {14, super, "KDE Plasma and Xfce use this for the file manager."},                 // E
    {15, super, "Xfce uses this to start apps."},                                      // R
    {0, super, "GNOME uses this to show all apps."},                                   // A
    {1, super, "GNOME uses this for its quick settings."},                             // S
    {9, super, "GNOME uses this for notifications, KDE Plasma for the clipboard."},    // V
    {46, super, "GNOME uses this for notifications."},                                 // M
    {45, super, "GNOME uses this for notifications."},                                 // N
    {4, super, "GNOME uses this to hide a window."},                                   // H
    {13, super, "KDE Plasma uses this for its overview."},                             // W
    {12, super, "KDE Plasma uses this for its activities."},                           // Q
    {5, super, "KDE Plasma uses this to show all desktops."},                          // G
    {17, super, "KDE Plasma uses this to arrange tiles."},                             // T
    {123, super, "Many desktops use this to tile a window."},                          // Left
    {124, super, "Many desktops use this to tile a window."},                          // Right
    {126, super, "Many desktops use this to enlarge a window."},                       // Up
    {125, super, "Many desktops use this to restore a window."},                       // Down
    {48, alt, "Many desktops use this to switch windows."},                            // Tab
    {50, alt, "Many desktops use this to switch windows."},                            // `
    {49, alt, "Many desktops use this for the menu of a window or to start apps."},    // Space
    {53, alt, "GNOME uses this to switch windows."},                                   // Esc
    {122, alt, "Many desktops use this for the menu of apps."},                        // F1
    {120, alt, "Many desktops use this to run a command."},                            // F2
    {99, alt, "KDE Plasma and Xfce use this for menus and search."},                   // F3
    {118, alt, "Many desktops use this to close a window."},                           // F4
    {98, alt, "Many desktops use this to move a window."},                             // F7
    {100, alt, "Many desktops use this to resize a window."},                          // F8
    {101, alt, "Xfce uses this to hide a window."},                                    // F9
    {109, alt, "Many desktops use this to enlarge a window."},                         // F10
    {103, alt, "Xfce uses this for full screen."},                                     // F11
    {37, controlAlt, "KDE Plasma and Xfce use this to lock the screen."},              // L
    {17, controlAlt, "Many desktops use this to open a terminal."},                    // T
    {2, controlAlt, "Many desktops use this to show the desktop."},                    // D
    {3, controlAlt, "Xfce uses this for the file manager."},                           // F
    {53, controlAlt, "KDE Plasma and Xfce use this to end a program by force."},       // Esc
    {123, controlAlt, "Many desktops use this to switch workspaces."},                 // Left
    {124, controlAlt, "Many desktops use this to switch workspaces."},                 // Right
    {126, controlAlt, "Many desktops use this to switch workspaces."},                 // Up
    {125, controlAlt, "Many desktops use this to switch workspaces."},                 // Down
    {8, control, "Every app uses this to copy."},                                      // C
    {9, control, "Every app uses this to paste."},                                     // V
    {7, control, "Every app uses this to cut."},                                       // X
    {6, control, "Every app uses this to undo."},                                      // Z
    {16, control, "Many apps use this to redo."},                                      // Y
    {0, control, "Every app uses this to select all."},                                // A
    {1, control, "Every app uses this to save."},                                      // S
    {35, control, "Every app uses this to print."},                                    // P
    {45, control, "Every app uses this for a new window."},                            // N
    {31, control, "Every app uses this to open a file."},                              // O
    {3, control, "Every app uses this to find."},                                      // F
    {12, control, "Every app uses this to quit."},                                     // Q
    {13, control, "Every app uses this to close a window or tab."},                    // W
    {17, control, "Many apps use this for a new tab."},                                // T
    {11, control, "Many apps use this for bold."},                                     // B
    {34, control, "Many apps use this for italics."},                                  // I
    {32, control, "Many apps use this to underline."},                                 // U
    {43, control, "Many apps use this for their settings."},                           // ,
    {49, control, "Input methods use this to switch languages."},                      // Space
    {53, control, "KDE Plasma and Xfce use this for menus and tasks."},                // Esc
    {48, control, "Many apps use this to switch tabs."},                               // Tab
    {37, control, "Browsers use this for the address bar, terminals to clear."},       // L
    {2, control, "Browsers use this for bookmarks, terminals to end input."},          // D
    {15, control, "Browsers use this to reload, terminals to search."},                // R
    {40, control, "Browsers and chat apps use this to search."},                       // K
    {4, control, "Browsers use this for the history, editors to replace."},            // H
    {38, control, "Browsers use this for downloads."},                                 // J
    {123, alt, "Browsers and file managers use this to go back."},                     // Left
    {124, alt, "Browsers and file managers use this to go forward."},                  // Right
    {8, controlShift, "Terminals use this to copy."},                                  // C
    {9, controlShift, "Terminals use this to paste."},                                 // V
    {6, controlShift, "Many apps use this to redo."},                                  // Z
    {1, controlShift, "Many apps use this to save a copy."},                           // S
    {17, controlShift, "Many apps use this for a tab that was closed or a new one."},  // T
    {45, controlShift, "Browsers use this for a private window."},                     // N
    {48, controlShift, "Many apps use this to switch tabs."},                          // Tab
    {53, controlShift, "Xfce uses this for its task manager."},                        // Esc
};

}  // namespace

std::span<const ReservedShortcut> DesktopShortcuts::reserved() {
    return table;
}

}  // namespace OrvelSystem
