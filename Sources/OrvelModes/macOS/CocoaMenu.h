#pragma once

#import <AppKit/AppKit.h>

#include "OrvelCore/Shortcut.h"
#include "OrvelModes/StatusItem/StatusMenu.h"

namespace OrvelModes::CocoaMenu {

NSEventModifierFlags flags(OrvelCore::Shortcut::Modifiers modifiers);
OrvelCore::Shortcut::Modifiers modifiers(NSEventModifierFlags flags);
/// The controller's rows as they are now. The controller outlives the menu.
NSMenu* menu(StatusMenuController& controller);
/// Never seen, but the keys that edit text work only through it.
NSMenu* mainMenu();

}  // namespace OrvelModes::CocoaMenu
