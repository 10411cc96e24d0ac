#import "OrvelUI/macOS/MenuPanelView.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/MenuPanelContent.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#import "OrvelUI/macOS/MenuPanelRowView.h"

namespace Drawing = OrvelUI::CocoaDrawing;
using OrvelUI::MenuPanelContent;
using OrvelUI::MenuPanelModel;
using OrvelUI::MenuPanelRow;

/// The rows between header and footer, from the top.
@interface OrvelMenuPanelBody : NSView
@end

@implementation OrvelMenuPanelBody
- (BOOL)isFlipped {
    return YES;
}
@end

@implementation OrvelMenuPanelView {
    MenuPanelModel* _model;
    MenuPanelContent _content;
    NSScrollView* _scroller;
    OrvelMenuPanelBody* _body;
    NSView* _header;
    NSView* _footer;
    std::vector<OrvelCore::Subscription> _observations;
    BOOL _isDue;
}

- (instancetype)initWithModel:(MenuPanelModel*)model {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _model = model;
        _scroller = [[NSScrollView alloc] initWithFrame:NSZeroRect];
        _scroller.drawsBackground = NO;
        _scroller.hasVerticalScroller = YES;
        _scroller.autohidesScrollers = YES;
        _body = [[OrvelMenuPanelBody alloc] initWithFrame:NSZeroRect];
        _scroller.documentView = _body;
        [self addSubview:_scroller];
        [self observe];
        [self refresh];
    }
    return self;
}

- (void)observe {
    __weak OrvelMenuPanelView* const weak = self;
    const auto observe = [&](auto& field) {
        _observations.push_back(field.observe([weak](const auto&) { [weak changed]; }));
    };
    observe(_model->frontAppName);
    observe(_model->quickBlurOn);
    observe(_model->focusBlurOn);
    observe(_model->privateAppsOn);
    observe(_model->privateChoices);
    observe(_model->showsPrivateChoices);
    observe(_model->lockedApps);
    observe(_model->now);
    observe(_model->lockMacShortcut);
    observe(_model->lockAppShortcut);
    observe(_model->quickBlurShortcut);
    observe(_model->focusBlurShortcut);
    observe(_model->updateVersion);
    observe(_model->restartWaits);
}

/// Updates the view once for all changes in a turn of the loop.
- (void)changed {
    if (_isDue) return;
    _isDue = YES;
    __weak OrvelMenuPanelView* const weak = self;
    dispatch_async(dispatch_get_main_queue(), ^{
      [weak refreshAndResize];
    });
}

- (void)refreshAndResize {
    _isDue = NO;
    [self refresh];
    _model->onResize();
}

- (OrvelMenuPanelRowView*)rowFor:(const MenuPanelRow&)row {
    return [[OrvelMenuPanelRowView alloc]
        initWithContent:row
                perform:[model = _model](const OrvelUI::MenuPanelAction& action) {
                    OrvelUI::perform(*model, action);
                }];
}

- (void)refresh {
    auto content = MenuPanelContent::of(*_model, OrvelSystem::Appearance::increasesContrast());
    if (_header && content == _content) return;
    _content = std::move(content);
    self.accessibilityLabel = OrvelSystem::Cocoa::string(_content.accessibleName);
    [_header removeFromSuperview];
    [_footer removeFromSuperview];
    for (NSView* row in _body.subviews.copy) [row removeFromSuperview];
    _header = [self rowFor:_content.header];
    _footer = [self rowFor:_content.footer];
    [self addSubview:_header];
    [self addSubview:_footer];
    double top = 0;
    for (const auto& row : _content.rows) {
        NSView* const view = [self rowFor:row];
        view.frame = NSMakeRect(0, top, MenuPanelContent::width, row.height());
        top += row.height();
        [_body addSubview:view];
    }
    _body.frame = NSMakeRect(0, 0, MenuPanelContent::width, top);
    self.needsLayout = YES;
    self.needsDisplay = YES;
}

- (OrvelCore::Size)fittingSize:(double)room {
    [self refresh];
    return {MenuPanelContent::width, _content.height(room)};
}

- (BOOL)isFlipped {
    return YES;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    return YES;
}

- (void)layout {
    [super layout];
    const NSSize size = self.bounds.size;
    const double header = _content.header.height();
    const double footer = _content.footer.height();
    _header.frame = NSMakeRect(0, 0, size.width, header);
    _footer.frame = NSMakeRect(0, size.height - footer, size.width, footer);
    _scroller.frame =
        NSMakeRect(0, header, size.width, std::max(0.0, size.height - header - footer));
}

- (void)drawRect:(NSRect)dirty {
    NSBezierPath* const card =
        [NSBezierPath bezierPathWithRoundedRect:NSInsetRect(self.bounds, 0.5, 0.5)
                                        xRadius:MenuPanelContent::cornerRadius
                                        yRadius:MenuPanelContent::cornerRadius];
    [Drawing::color({OrvelUI::Palette::lockCard}) set];
    [card fill];
    [Drawing::color({OrvelUI::Palette::lockInk, 0.14}) set];
    [card stroke];
}

@end
