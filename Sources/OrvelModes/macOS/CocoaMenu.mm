#include "OrvelModes/macOS/CocoaMenu.h"

#include <array>
#include <utility>
#include <variant>

#include "OrvelModes/Windows/AppMenu.h"
#include "OrvelSystem/macOS/Cocoa.h"
#import "OrvelUI/macOS/Controls.h"

namespace OrvelModes::CocoaMenu {

namespace Cocoa = OrvelSystem::Cocoa;
using Modifiers = OrvelCore::Shortcut::Modifiers;

namespace {

struct Pair {
    Modifiers modifier;
    NSEventModifierFlags flag;
};
constexpr std::array<Pair, 4> pairs = {{{Modifiers::command, NSEventModifierFlagCommand},
                                        {Modifiers::option, NSEventModifierFlagOption},
                                        {Modifiers::control, NSEventModifierFlagControl},
                                        {Modifiers::shift, NSEventModifierFlagShift}}};

NSMenu* submenu(StatusMenuController& controller, const std::string& title,
                const std::vector<StatusMenuEntry>& entries);

NSMenuItem* item(StatusMenuController& controller, const StatusMenuEntry& entry) {
    if (std::holds_alternative<StatusMenuEntry::Separator>(entry.kind))
        return [NSMenuItem separatorItem];
    NSMenuItem* const item = [[NSMenuItem alloc] initWithTitle:Cocoa::string(entry.title)
                                                        action:nil
                                                 keyEquivalent:Cocoa::string(entry.key)];
    item.keyEquivalentModifierMask = flags(entry.modifiers);
    item.state = entry.checked ? NSControlStateValueOn : NSControlStateValueOff;
    item.enabled = entry.enabled;
    if (const auto* const action = entry.action()) {
        // A menu item does not retain its target, but it retains its represented object.
        OrvelActionTarget* const target = [[OrvelActionTarget alloc]
            initWithCall:[&controller, action = *action](id) { controller.perform(action); }];
        item.target = target;
        item.representedObject = target;
        item.action = @selector(act:);
    } else if (std::holds_alternative<StatusMenuEntry::Submenu>(entry.kind)) {
        item.submenu = submenu(controller, entry.title, entry.children);
    } else {
        item.enabled = NO;
    }
    return item;
}

NSMenu* submenu(StatusMenuController& controller, const std::string& title,
                const std::vector<StatusMenuEntry>& entries) {
    NSMenu* const menu = [[NSMenu alloc] initWithTitle:Cocoa::string(title)];
    // The rows themselves state whether they are enabled.
    menu.autoenablesItems = NO;
    for (const auto& entry : entries) [menu addItem:item(controller, entry)];
    return menu;
}

}  // namespace

NSEventModifierFlags flags(Modifiers modifiers) {
    NSEventModifierFlags result{};
    for (const auto& [modifier, flag] : pairs)
        if (modifiers.contains(modifier)) result = result | flag;
    return result;
}

Modifiers modifiers(NSEventModifierFlags flags) {
    Modifiers result;
    for (const auto& [modifier, flag] : pairs)
        if ((flags & flag) == flag) result |= modifier;
    return result;
}

NSMenu* menu(StatusMenuController& controller) {
    return submenu(controller, {}, controller.menu());
}

NSMenu* mainMenu() {
    const auto content = AppMenu::make();
    NSMenu* const edit = [[NSMenu alloc] initWithTitle:Cocoa::string(content.title)];
    for (const auto& row : content.rows) {
        if (row.title.empty()) {
            [edit addItem:[NSMenuItem separatorItem]];
            continue;
        }
        NSMenuItem* const item =
            [[NSMenuItem alloc] initWithTitle:Cocoa::string(row.title)
                                       action:NSSelectorFromString(Cocoa::string(row.selector))
                                keyEquivalent:Cocoa::string(row.key)];
        item.keyEquivalentModifierMask = flags(row.modifiers);
        [edit addItem:item];
    }
    NSMenuItem* const holder = [[NSMenuItem alloc] initWithTitle:Cocoa::string(content.title)
                                                          action:nil
                                                   keyEquivalent:@""];
    holder.submenu = edit;
    NSMenu* const bar = [[NSMenu alloc] initWithTitle:@""];
    [bar addItem:holder];
    return bar;
}

}  // namespace OrvelModes::CocoaMenu
