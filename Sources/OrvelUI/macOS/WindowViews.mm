#import "OrvelUI/macOS/WindowViews.h"

#include <algorithm>
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

namespace {

// In points.
constexpr double stripInset = 16;
constexpr double sidebarWidth = 170;

}  // namespace

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
    BOOL _hasSidebar;
    BOOL _isDue;
}

- (instancetype)initWithSidebar:(BOOL)sidebar {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _hasSidebar = sidebar;
        _form = [[OrvelFormView alloc] initWithFrame:NSZeroRect];
        _strip = Controls::stack(sidebar, sidebar ? 4 : 12);
        _strip.insets = NSEdgeInsets{stripInset, stripInset, stripInset, stripInset};
        [self addSubview:_form];
        [self addSubview:_strip];
    }
    return self;
}

- (BOOL)isFlipped {
    return YES;
}

/// The strip has the size of its buttons, and the form gets the rest.
- (void)place {
    const NSSize all = self.bounds.size;
    NSSize strip = [_strip sizeForWidth:all.width];
    // The same for each pane, although the chosen button is wider.
    if (_hasSidebar) strip.width = std::max(strip.width, sidebarWidth);
    // The title bar covers the top of the content.
    const double top = self.safeAreaInsets.top;
    if (_hasSidebar) {
        _strip.frame = NSMakeRect(0, top, strip.width, all.height - top);
        _form.frame =
            NSMakeRect(strip.width, top, std::max(0.0, all.width - strip.width), all.height - top);
    } else {
        _form.frame = NSMakeRect(0, top, all.width, std::max(0.0, all.height - strip.height - top));
        _strip.frame = NSMakeRect((all.width - strip.width) / 2, all.height - strip.height,
                                  strip.width, strip.height);
    }
    [_strip place];
}

- (void)layout {
    [super layout];
    [self place];
}

- (void)resizeSubviewsWithOldSize:(NSSize)size {
    [super resizeSubviewsWithOldSize:size];
    [self place];
}

- (void)follow:(std::vector<OrvelCore::Subscription>)observations {
    _observations = std::move(observations);
    __weak OrvelFormWindowView* const weak = self;
    _appearance = OrvelSystem::Appearance::observe([weak] { [weak scheduleShow]; });
    [self showNow];
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
    if (!self.show) return;
    self.show();
    [self place];
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
            NSButton* const button = Controls::pushButton(item.title);
            [button setButtonType:NSButtonTypePushOnPushOff];
            button.image = [NSImage imageWithSystemSymbolName:Cocoa::string(item.symbol)
                                     accessibilityDescription:nil];
            button.imagePosition = NSImageLeading;
            button.bordered = item.chosen;
            button.state = item.chosen ? NSControlStateValueOn : NSControlStateValueOff;
            [button sizeToFit];
            [shown.strip connect:button to:[choose = item.choose](id) { choose(); }];
            [shown.strip add:button];
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
        if (content.back) [shown.strip add:Controls::button(*content.back, shown.strip)];
        [shown.strip add:Controls::pageDots(content.dots, colors)];
        if (content.secondary) [shown.strip add:Controls::button(*content.secondary, shown.strip)];
        [shown.strip add:Controls::button(content.primary, shown.strip)];
        [shown.form setContent:content.form colors:colors];
    };
    [view follow:model.observe([weak] { [weak scheduleShow]; })];
    return view;
}

}  // namespace OrvelUI
