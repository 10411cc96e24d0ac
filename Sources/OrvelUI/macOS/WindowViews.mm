#import "OrvelUI/macOS/WindowViews.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/OnboardingContent.h"
#include "OrvelUI/SettingsPanes.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#import "OrvelUI/macOS/Controls.h"
#import "OrvelUI/macOS/FormPictures.h"
#import "OrvelUI/macOS/FormView.h"

namespace Cocoa = OrvelSystem::Cocoa;
namespace Controls = OrvelUI::CocoaControls;
namespace Drawing = OrvelUI::CocoaDrawing;
using OrvelUI::FormColors;

/// A form and a strip of buttons, rebuilt after each change of a model.
@interface OrvelFormWindowView : NSView
/// Shows the current state of the model.
@property(nonatomic) std::function<void()> show;
@property(nonatomic, readonly) OrvelFormView* form;
/// Beside the form, or below it.
@property(nonatomic, readonly) OrvelActionView* strip;
- (instancetype)initWithSidebar:(BOOL)sidebar;
- (void)follow:(std::vector<OrvelCore::Subscription>)observations;
/// Shows the model at the end of this turn of the loop, but not while a control tracks the pointer.
- (void)scheduleShow;
@end

@implementation OrvelFormWindowView {
    std::vector<OrvelCore::Subscription> _observations;
    OrvelCore::Subscription _appearance;
    BOOL _isDue;
}

- (instancetype)initWithSidebar:(BOOL)sidebar {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _form = [[OrvelFormView alloc] initWithFrame:NSZeroRect];
        _strip = Controls::stack(sidebar, sidebar ? 4 : 12);
        _strip.edgeInsets = NSEdgeInsets{16, 16, 16, 16};
        NSStackView* const halves = Controls::stack(!sidebar, 0);
        halves.alignment = sidebar ? NSLayoutAttributeTop : NSLayoutAttributeCenterX;
        halves.frame = self.bounds;
        halves.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
        for (NSView* half in sidebar ? @[ _strip, _form ] : @[ _form, _strip ])
            [halves addArrangedSubview:half];
        [self addSubview:halves];
        // The strip has the size of its buttons, and the form gets the rest.
        if (sidebar)
            [_form.heightAnchor constraintEqualToAnchor:halves.heightAnchor].active = YES;
        else
            [_form.widthAnchor constraintEqualToAnchor:halves.widthAnchor].active = YES;
    }
    return self;
}

- (void)follow:(std::vector<OrvelCore::Subscription>)observations {
    _observations = std::move(observations);
    __weak OrvelFormWindowView* const weak = self;
    _appearance = OrvelSystem::Appearance::observe([weak] { [weak scheduleShow]; });
    if (self.show) self.show();
}

- (void)scheduleShow {
    if (_isDue) return;
    _isDue = YES;
    __weak OrvelFormWindowView* const weak = self;
    NSTimer* const timer = [NSTimer timerWithTimeInterval:0
                                                  repeats:NO
                                                    block:^(NSTimer*) {
                                                      [weak showNow];
                                                    }];
    [NSRunLoop.mainRunLoop addTimer:timer forMode:NSDefaultRunLoopMode];
}

- (void)showNow {
    _isDue = NO;
    if (self.show) self.show();
}

@end

namespace OrvelUI {

NSView* makeSettingsView(SettingsModel& model) {
    OrvelFormWindowView* const view = [[OrvelFormWindowView alloc] initWithSidebar:YES];
    __weak OrvelFormWindowView* const weak = view;
    view.show = [weak, &model] {
        OrvelFormWindowView* const shown = weak;
        const FormColors colors{currentTheme()};
        [shown.strip clear];
        for (const auto& item : SettingsSidebar::of(model).items) {
            NSButton* const button = [NSButton buttonWithTitle:Cocoa::string(item.title)
                                                        target:nil
                                                        action:nil];
            [button setButtonType:NSButtonTypePushOnPushOff];
            button.image = [NSImage imageWithSystemSymbolName:Cocoa::string(item.symbol)
                                     accessibilityDescription:nil];
            button.imagePosition = NSImageLeading;
            button.bordered = item.chosen;
            button.state = item.chosen ? NSControlStateValueOn : NSControlStateValueOff;
            [shown.strip connect:button to:[choose = item.choose](id) { choose(); }];
            [shown.strip addArrangedSubview:button];
        }
        [shown.form setContent:SettingsPanes::current(model, colors.theme) colors:colors];
    };
    [view follow:model.observe([weak] { [weak scheduleShow]; })];
    return view;
}

NSView* makeOnboardingView(OnboardingModel& model) {
    OrvelFormWindowView* const view = [[OrvelFormWindowView alloc] initWithSidebar:NO];
    __weak OrvelFormWindowView* const weak = view;
    view.show = [weak, &model] {
        OrvelFormWindowView* const shown = weak;
        const FormColors colors{currentTheme()};
        const auto content = OnboardingContent::of(model);
        [shown.strip clear];
        if (content.back)
            [shown.strip addArrangedSubview:Controls::button(*content.back, shown.strip)];
        [shown.strip addArrangedSubview:Controls::pageDots(content.dots, colors)];
        if (content.secondary)
            [shown.strip addArrangedSubview:Controls::button(*content.secondary, shown.strip)];
        [shown.strip addArrangedSubview:Controls::button(content.primary, shown.strip)];
        [shown.form setContent:content.form colors:colors];
    };
    [view follow:model.observe([weak] { [weak scheduleShow]; })];
    return view;
}

}  // namespace OrvelUI
