#include "OrvelModes/macOS/LiveStatusItem.h"

#import <AppKit/AppKit.h>

#include "OrvelModes/macOS/CocoaMenu.h"
#include "OrvelSystem/StatusItemVisibility.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelSystem/macOS/Displays.h"
#include "OrvelSystem/macOS/Notifications.h"
#include "OrvelUI/MenuBarIcon.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#import "OrvelUI/macOS/Controls.h"

namespace OrvelModes {

namespace Cocoa = OrvelSystem::Cocoa;
namespace Drawing = OrvelUI::CocoaDrawing;
using OrvelUI::MenuBarIcon;

namespace {

/// In one colour, which the menu bar replaces with its own.
NSImage* templateImage(OrvelCore::MenuBarIconState state) {
    const NSSize size = NSMakeSize(MenuBarIcon::size.width, MenuBarIcon::size.height);
    NSImage* const image = [NSImage imageWithSize:size
                                          flipped:YES
                                   drawingHandler:^BOOL(NSRect) {
                                     const auto icon = MenuBarIcon::image(state);
                                     [NSColor.blackColor set];
                                     NSBezierPath* const line = Drawing::path(icon.outline);
                                     line.lineWidth = MenuBarIcon::lineWidth;
                                     [line stroke];
                                     [Drawing::path(icon.filling) fill];
                                     return YES;
                                   }];
    [image setTemplate:YES];
    image.accessibilityDescription = Cocoa::string(MenuBarIcon::accessibleDescription);
    return image;
}

class LiveStatusItem final : public StatusItem {
  public:
    explicit LiveStatusItem(StatusMenuController& menu) : menu_(menu) {
        item_.autosaveName = @"com.brindlewick.karvo.item";
        item_.visible = NO;
        target_ = [[OrvelActionTarget alloc] initWithCall:[this](id) { pressed(); }];
        NSStatusBarButton* const button = item_.button;
        button.target = target_;
        button.action = @selector(act:);
        [button sendActionOn:NSEventMaskLeftMouseUp | NSEventMaskRightMouseUp];
        button.accessibilityLabel = Cocoa::string(MenuBarIcon::accessibleDescription);
        setState(OrvelCore::MenuBarIconState::rest);
        occlusion_ = OrvelSystem::observeNotification(
            NSNotificationCenter.defaultCenter, NSWindowDidChangeOcclusionStateNotification,
            [this](NSNotification* notification) {
                if (notification.object == item_.button.window) onShownChanged();
            });
    }
    LiveStatusItem(const LiveStatusItem&) = delete;
    LiveStatusItem& operator=(const LiveStatusItem&) = delete;
    ~LiveStatusItem() override { [NSStatusBar.systemStatusBar removeStatusItem:item_]; }

    void setVisible(bool visible) override { item_.visible = visible; }
    void setState(OrvelCore::MenuBarIconState state) override {
        item_.button.image = templateImage(state);
    }
    std::optional<bool> isShown() const override {
        NSWindow* const window = item_.button.window;
        if (!item_.isVisible) return false;
        if (!window) return std::nullopt;
        return OrvelSystem::StatusItemVisibility::isShown(window.windowNumber);
    }
    void performClick() override { click(true); }

  private:
    void pressed() {
        NSEvent* const event = NSApp.currentEvent;
        const bool isSecondary =
            event &&
            (event.type == NSEventTypeRightMouseUp ||
             (event.type == NSEventTypeLeftMouseUp &&
              (event.modifierFlags & NSEventModifierFlagControl) == NSEventModifierFlagControl));
        if (isSecondary) return showMenu();
        click(event && event.type == NSEventTypeLeftMouseUp);
    }
    void click(bool byMouse) {
        NSWindow* const window = item_.button.window;
        const auto anchor = Cocoa::rect(window ? window.frame : NSZeroRect);
        NSScreen* const screen = window.screen ? window.screen : NSScreen.screens.firstObject;
        onClick({.anchor = anchor,
                 .screen = screen ? Cocoa::rect(screen.frame) : OrvelCore::Rect{},
                 .byMouse = byMouse});
    }
    void showMenu() {
        menu_.menuNeedsUpdate();
        NSStatusBarButton* const button = item_.button;
        [CocoaMenu::menu(menu_) popUpMenuPositioningItem:nil
                                              atLocation:NSMakePoint(0, button.bounds.size.height)
                                                  inView:button];
    }

    StatusMenuController& menu_;
    NSStatusItem* item_ =
        [NSStatusBar.systemStatusBar statusItemWithLength:NSSquareStatusItemLength];
    OrvelActionTarget* target_ = nil;
    OrvelCore::Subscription occlusion_;
};

}  // namespace

std::unique_ptr<StatusItem> makeLiveStatusItem(StatusMenuController& menu) {
    return std::make_unique<LiveStatusItem>(menu);
}

}  // namespace OrvelModes
