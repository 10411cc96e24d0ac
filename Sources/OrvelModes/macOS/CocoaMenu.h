#pragma once

#import <AppKit/AppKit.h>

#include "OrvelCore/Shortcut.h"
#include "OrvelModes/StatusItem/StatusMenu.h"

namespace OrvelModes::CocoaMenu {

NSEventModifierFlags flags(OrvelCore::Shortcut::Modifiers modifiers);
OrvelCore::Shortcut::Modifiers modifiers(NSEventModifierFlags flags);
/// The controller's current rows. The controller must outlive the menu.
NSMenu* menu(StatusMenuController& controller);
/// Never visible, but the keys for editing text work only through it.
NSMenu* mainMenu();

}  // namespace OrvelModes::CocoaMenu
