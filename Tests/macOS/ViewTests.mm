#include <memory>
#include <string>
#include <vector>

#import <AppKit/AppKit.h>
#include <gmock/gmock.h>

#include "OrvelModes/StatusItem/StatusMenu.h"
#include "OrvelModes/macOS/CocoaMenu.h"
#include "OrvelUI/MenuPanelContent.h"
#include "OrvelUI/NoticePill.h"
#include "OrvelUI/OnboardingContent.h"
#include "OrvelUI/SettingsPanes.h"
#import "OrvelUI/macOS/LockViews.h"
#import "OrvelUI/macOS/MenuPanelView.h"
#import "OrvelUI/macOS/NoticePillView.h"
#import "OrvelUI/macOS/WindowViews.h"

#include "Snapshot.h"
#include "Support/FullMenu.h"

namespace OrvelUI {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Card = LockCardModel;

const OrvelCore::Date now = OrvelCore::dateFromSecondsSince1970(1'763'733'909);

std::unique_ptr<Card> card(const Card::Status& status = Card::Ready{}) {
    auto model = std::make_unique<Card>("Ada King Lovelace", nullptr, true);
    model->now.set(now);
    model->locale.set({"en_GB"});
    model->timeZone.set({"UTC"});
    model->staticPreview.set(true);
    model->status.set(status);
    return model;
}

/// The view in an area of that size.
Snapshot placed(NSView<OrvelPlacedView>* view, NSSize area, const std::string& name) {
    return {view, [view placementIn:area].size, name};
}

constexpr NSSize display{800, 300};

TEST(LockViews, ACardShowsEachStatusDifferently) {
    struct Row {
        const char* name;
        Card::Status status;
        bool isRed;
    };
    const std::vector<Row> rows = {
        {"card-cooldown", Card::Cooldown{now + OrvelCore::Seconds(40)}, true},
        {"card-ready", Card::Ready{}, false},
        {"card-verifying", Card::Verifying{}, false},
        {"card-wrong", Card::WrongPassword{}, true},
        {"card-paused", Card::PasswordsPaused{}, false},
        {"card-unavailable", Card::Unavailable{}, true},
    };
    std::vector<std::unique_ptr<Snapshot>> seen;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto model = card(row.status);
        NSView<OrvelPlacedView>* const view = makeLockScreenContent(*model, {});
        const NSSize size = [view placementIn:display].size;
        seen.push_back(std::make_unique<Snapshot>(view, size, row.name));
        const NSRect all = NSMakeRect(0, 0, size.width, size.height);
        EXPECT_GT(seen.back()->count(all, Palette::island), all.size.width * all.size.height / 4);
        EXPECT_GT(seen.back()->count(all, Palette::lockInk), 100) << "no text";
        EXPECT_EQ(seen.back()->count(all, Palette::lockDanger) > 10, row.isRed);
        for (std::size_t i = 0; i + 1 < seen.size(); ++i) EXPECT_FALSE(*seen[i] == *seen.back());
    }
}

TEST(LockViews, ACardLeavesTheNotchFree) {
    const auto model = card();
    const NotchMetrics notch{.width = 180, .height = 32, .centerX = 400};
    NSView<OrvelPlacedView>* const view = makeLockScreenContent(*model, notch);
    const NSRect place = [view placementIn:display];
    const Snapshot picture(view, place.size, "card-notch");
    EXPECT_EQ(NSMidX(place), 400);
    const NSRect middle = NSMakeRect(NSMidX(place) - place.origin.x - 90, 1, 180, 31);
    EXPECT_EQ(picture.count(middle, Palette::island), 180 * 31);
}

TEST(LockViews, ThePasswordIsTypedIntoTheFieldAndLeavesIt) {
    auto model = card();
    std::vector<std::string> submitted;
    model->onSubmit = [&](OrvelSystem::Password word) { submitted.emplace_back(word.view()); };
    NSView<OrvelPlacedView>* const view = makeLockScreenContent(*model, {});
    const Snapshot picture = placed(view, display, "card-field");
    NSTextView* editor = static_cast<NSTextView*>(view.window.firstResponder);
    ASSERT_TRUE([editor isKindOfClass:[NSTextView class]]);
    const auto type = [&](NSString* text) { [editor insertText:text]; };
    type(@"pä");
    type(@"ss");
    EXPECT_EQ(model->password.get().view(), "päss");
    [editor doCommandBySelector:@selector(cancelOperation:)];
    EXPECT_EQ(model->password.get().view(), "");
    EXPECT_TRUE([view.window.firstResponder isKindOfClass:[NSTextView class]]);
    [view.window makeFirstResponder:nil];
    [view mouseDown:[[NSEvent alloc] init]];
    editor = static_cast<NSTextView*>(view.window.firstResponder);
    type(@"word");
    [editor doCommandBySelector:@selector(insertTab:)];
    [editor doCommandBySelector:@selector(insertNewline:)];
    EXPECT_THAT(submitted, ElementsAre("word"));
    model->status.set(Card::Verifying{});
    type(@"late");
    EXPECT_EQ(model->password.get().view(), "");
}

TEST(LockViews, ABadgeOpensByAClickAndClosesByEscape) {
    const auto model = card();
    std::string told;
    for (const bool isOpen : {false, true}) {
        NSView<OrvelPlacedView>* const view = makeAppLockBadge(
            *model, isOpen, [&] { told = "tap"; }, [&] { told = "cancel"; });
        const Snapshot picture(view, NSMakeSize(420, 240), isOpen ? "badge-open" : "badge");
        EXPECT_GT(picture.count(NSMakeRect(100, 60, 220, 120), Palette::lockCard), 2000);
        NSEvent* const click = [NSEvent mouseEventWithType:NSEventTypeLeftMouseDown
                                                  location:NSMakePoint(210, 120)
                                             modifierFlags:NSEventModifierFlags {}
                                                 timestamp:0
                                              windowNumber:view.window.windowNumber
                                                   context:nil
                                               eventNumber:0
                                                clickCount:1
                                                  pressure:1];
        if (isOpen)
            [view.window.firstResponder doCommandBySelector:@selector(cancelOperation:)];
        else
            [view mouseDown:click];
        Scripted::runUntil([&] { return !told.empty(); });
        EXPECT_EQ(std::exchange(told, {}), isOpen ? "cancel" : "tap");
    }
}

TEST(LockViews, PillsHaveTheirTextInTheMiddle) {
    const auto model = card(Card::Cooldown{now + OrvelCore::Seconds(40)});
    OrvelNoticePillView* const blur =
        [[OrvelNoticePillView alloc] initWithContent:QuickBlurPill::content({}) notch:{} onTap:{}];
    const std::vector<std::pair<const char*, NSView<OrvelPlacedView>*>> pills = {
        {"pill-display", makeSecondaryDisplayPill(*model, {})}, {"pill-blur", blur}};
    for (const auto& [name, view] : pills) {
        SCOPED_TRACE(name);
        const NSSize size = [view placementIn:display].size;
        const Snapshot picture(view, size, name);
        EXPECT_GT(picture.count(NSMakeRect(0, 0, size.width, size.height), Palette::lockInk), 40);
        EXPECT_GT(picture.count(NSMakeRect(size.width / 2, 2, 1, 10), Palette::island), 5);
    }
}

TEST(MenuPanelView, ItsRowsFollowEachOtherAndTakeClicks) {
    MenuPanelModel model;
    std::string told;
    fill(model, now);
    model.onLockMac = [&] { told = "lock"; };
    OrvelMenuPanelView* const view = [[OrvelMenuPanelView alloc] initWithModel:&model];
    const auto size = [view fittingSize:2000];
    const Snapshot picture(view, NSMakeSize(size.width, size.height), "panel");
    EXPECT_GT(picture.count(NSMakeRect(0, 0, size.width, size.height), Palette::lockInk), 500);
    // The header, the rows between, which a scroll view holds, and the footer.
    NSMutableArray* const rows = [NSMutableArray array];
    NSScrollView* scroller = nil;
    for (NSView* part in view.subviews)
        if ([part isKindOfClass:[NSScrollView class]])
            scroller = static_cast<NSScrollView*>(part);
        else
            [rows addObject:part];
    for (NSView* row in scroller.documentView.subviews.reverseObjectEnumerator)
        [rows insertObject:row atIndex:1];
    double below = 0;
    for (NSView* row in rows) {
        const NSRect frame = [row convertRect:row.bounds toView:view];
        EXPECT_EQ(frame.origin.y, below);
        EXPECT_EQ(frame.size.width, size.width);
        below = NSMaxY(frame);
        if (told.empty()) [row mouseDown:[[NSEvent alloc] init]];
    }
    EXPECT_EQ(below, size.height);
    EXPECT_EQ(rows.count, MenuPanelContent::of(model, false).rows.size() + 2);
    EXPECT_EQ(told, "lock");
}

/// Every part lies inside its parent, and no two parts of a parent overlap.
void expectNoOverlap(NSView* view, const std::string& path) {
    NSArray<NSView*>* const parts = view.subviews;
    for (NSView* part in parts) {
        const std::string own = path + "/" + part.className.UTF8String;
        const NSRect frame = part.frame;
        if (![view isKindOfClass:[NSClipView class]]) {
            EXPECT_GE(frame.origin.x, -0.5) << own;
            EXPECT_GE(frame.origin.y, -0.5) << own;
            EXPECT_LE(NSMaxX(frame), view.bounds.size.width + 1) << own;
            EXPECT_LE(NSMaxY(frame), view.bounds.size.height + 1) << own;
        }
        EXPECT_GT(frame.size.width * frame.size.height, 0) << own;
        for (NSView* other in parts)
            if (other != part && !part.hidden && !other.hidden) {
                const NSRect common = NSIntersectionRect(frame, other.frame);
                EXPECT_LE(common.size.width * common.size.height, 1) << own;
            }
        // The parts of system controls are their own.
        if (![part isKindOfClass:[NSControl class]] && ![part isKindOfClass:[NSScroller class]])
            expectNoOverlap(part, own);
    }
}

TEST(WindowViews, EachPaneOfSettingsHasRoomForItsParts) {
    // Outlives the views, which the stand-ins may keep.
    static SettingsModel model;
    auto& preferences = model.preferences;
    preferences.privateApps.set({{.id = "a", .name = "Signal"}, {.id = "b", .name = "Beta"}});
    preferences.addableApps.set({{.id = "c", .name = "Mail"}});
    preferences.showsAddableApps.set(true);
    preferences.macOSCorners.set({PreferencesModel::Corner::topLeft});
    preferences.shortcutNotes.set({{PreferencesModel::Action::lockMac, "Taken."}});
    model.about.updateStatus.set("Ready.");
    for (std::size_t i = 0; i < 6; ++i) {
        const auto pane = static_cast<SettingsPane>(i);
        SCOPED_TRACE(std::string(title(pane)));
        model.pane.set(pane);
        NSView* const view = makeSettingsView(model);
        const Snapshot picture(view, NSMakeSize(settingsSize.width, settingsSize.height),
                               "settings-" + std::string(rawNames(pane)[i]));
        expectNoOverlap(view, "");
        if (pane != SettingsPane::lock) continue;
        const int marked = picture.count(NSMakeRect(190, 90, 520, 120), Palette::accentLight);
        EXPECT_GT(marked, 400) << "no style is marked as chosen";
        EXPECT_LT(marked, 1600) << "several styles are marked as chosen";
    }
}

TEST(WindowViews, EachStepOfTheGuideHasRoomForItsParts) {
    static OnboardingModel model;
    model.staticPreview = true;
    model.lockMac.set(OrvelCore::Shortcut::lockMac());
    model.apps.set({{.id = "a", .name = "Signal"}, {.id = "b", .name = "Mail"}});
    for (int step = 0; step < OrvelCore::onboardingStepCount; ++step) {
        SCOPED_TRACE(step);
        auto flow = model.flow.get();
        flow.step = static_cast<OrvelCore::OnboardingStep>(step);
        model.flow.set(flow);
        NSView* const view = makeOnboardingView(model);
        const auto size = OnboardingContent::size;
        const Snapshot picture(view, NSMakeSize(size.width, size.height),
                               "guide-" + std::to_string(step + 1));
        expectNoOverlap(view, "");
    }
}

/// The rows as "title", "x title" if checked, "(title)" if disabled, and submenus in brackets.
std::vector<std::string> rows(NSMenu* menu) {
    std::vector<std::string> result;
    for (NSMenuItem* item in menu.itemArray) {
        std::string text = item.isSeparatorItem ? "-" : item.title.UTF8String;
        if (item.state == NSControlStateValueOn) text = "x " + text;
        if (!item.isEnabled && !item.isSeparatorItem) text = "(" + text + ")";
        if (item.submenu)
            for (const auto& row : rows(item.submenu)) text += " [" + row + "]";
        result.push_back(text);
    }
    return result;
}

TEST(CocoaMenu, HasTheRowsOfTheControllerAndPerformsThem) {
    using OrvelModes::StatusMenuEntry;
    MenuPanelModel model;
    std::string told;
    fill(model, now);
    model.onLockMac = [&] { told = "lock"; };
    OrvelModes::StatusMenuController controller(model);
    controller.rebuild();
    NSMenu* const menu = OrvelModes::CocoaMenu::menu(controller);
    const std::function<std::vector<std::string>(const std::vector<StatusMenuEntry>&)> expected =
        [&](const auto& entries) {
            std::vector<std::string> result;
            for (const auto& entry : entries) {
                const bool isSeparator =
                    std::holds_alternative<StatusMenuEntry::Separator>(entry.kind);
                std::string text = isSeparator ? "-" : entry.title;
                if (entry.checked) text = "x " + text;
                const bool acts =
                    entry.action() || std::holds_alternative<StatusMenuEntry::Submenu>(entry.kind);
                if (!isSeparator && !(acts && entry.enabled)) text = "(" + text + ")";
                for (const auto& row : expected(entry.children)) text += " [" + row + "]";
                result.push_back(text);
            }
            return result;
        };
    EXPECT_EQ(rows(menu), expected(controller.menu()));
    for (NSInteger i = 0; i < menu.numberOfItems && told.empty(); ++i) {
        NSMenuItem* const item = [menu itemAtIndex:i];
        if (item.action) [NSApp sendAction:item.action to:item.target from:item];
    }
    EXPECT_EQ(told, "lock");
}

}  // namespace
}  // namespace OrvelUI
