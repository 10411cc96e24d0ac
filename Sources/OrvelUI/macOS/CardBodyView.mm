#import "OrvelUI/macOS/CardBodyView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#import <LocalAuthenticationEmbeddedUI/LocalAuthenticationEmbeddedUI.h>

#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelSystem/macOS/TouchIDContext.h"
#include "OrvelUI/macOS/Animation.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#import "OrvelUI/macOS/SecureField.h"

namespace Drawing = OrvelUI::CocoaDrawing;
using Kind = OrvelUI::IndicatorContent::Kind;
using Body = OrvelUI::CardBodyContent;
using OrvelUI::IndicatorContent;
using OrvelUI::Spinner;
using OrvelUI::Palette::lockInk;

@implementation OrvelCardBodyView {
    double _top;
    Body _content;
    OrvelSecureField* _field;
    OrvelUI::Animation _turning;
    double _turn;
    /// The system's own view of the sensor while a prompt runs. With it the prompt needs no sheet,
    /// which would appear below the covers.
    LAAuthenticationView* _prompt;
    OrvelCore::Subscription _promptObservation;
}

- (instancetype)initWithModel:(OrvelUI::LockCardModel*)model
                          top:(double)top
                  fieldRadius:(double)radius
                     onEscape:(std::function<void()>)escape {
    if ((self = [super initWithFrame:NSZeroRect])) {
        _top = top;
        _field = [[OrvelSecureField alloc] initWithModel:model
                                            cornerRadius:radius
                                                onEscape:std::move(escape)];
        [self addSubview:_field];
        __weak OrvelCardBodyView* const weak = self;
        _promptObservation =
            model->biometricContext.observe([weak](const auto& context) { [weak embed:context]; });
        [self embed:model->biometricContext.get()];
    }
    return self;
}

- (void)embed:(const std::shared_ptr<OrvelSystem::BiometricContext>&)context {
    [_prompt removeFromSuperview];
    _prompt = nil;
    if (const auto touchID = std::dynamic_pointer_cast<OrvelSystem::TouchIDContext>(context)) {
        _prompt = [[LAAuthenticationView alloc] initWithContext:touchID->context()
                                                    controlSize:NSControlSizeRegular];
        [self addSubview:_prompt];
    }
    self.needsLayout = YES;
    self.needsDisplay = YES;
}

- (NSPoint)indicatorCentre {
    return NSMakePoint(self.bounds.size.width - IndicatorContent::size / 2 - 2,
                       _top + Body::avatarSide / 2);
}

- (BOOL)isFlipped {
    return YES;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    return YES;
}

- (void)mouseDown:(NSEvent*)event {
    [self takeKeyboard];
}

- (void)takeKeyboard {
    [_field takeKeyboard];
}

- (void)setContent:(const Body&)content {
    _content = content;
    [_field setContent:content.field];
    [self updateTurning];
    self.needsLayout = YES;
    self.needsDisplay = YES;
}

- (void)viewDidMoveToWindow {
    [super viewDidMoveToWindow];
    [self updateTurning];
}

- (void)updateTurning {
    const bool turns = _content.indicator.kind == Kind::spinner && self.window != nil;
    if (turns == _turning.isRunning()) return;
    _turning.stop();
    if (!turns) return;
    __weak OrvelCardBodyView* const weak = self;
    _turning.start([weak](double seconds) {
        OrvelCardBodyView* const view = weak;
        if (!view) return false;
        view->_turn = std::fmod(seconds / Spinner::period, 1);
        view.needsDisplay = YES;
        return true;
    });
}

- (void)layout {
    [super layout];
    const NSPoint centre = [self indicatorCentre];
    constexpr double side = IndicatorContent::size;
    _prompt.frame = NSMakeRect(centre.x - side / 2, centre.y - side / 2, side, side);
    _prompt.hidden = _content.indicator.kind != Kind::touchID;
    _field.frame = NSMakeRect(0, _top + Body::avatarSide + Body::rowGap, self.bounds.size.width,
                              OrvelUI::PasswordFieldContent::height);
}

- (void)drawRect:(NSRect)dirty {
    const NSRect avatar = NSMakeRect(0, _top, Body::avatarSide, Body::avatarSide);
    Drawing::avatar(_content.avatar, avatar);
    const bool hasIndicator = _content.indicator.kind != Kind::none;
    const double left = Body::avatarSide + Body::textGap;
    const double room =
        self.bounds.size.width - left - (hasIndicator ? IndicatorContent::size + Body::textGap : 0);
    const double top = NSMidY(avatar) - (Body::nameHeight + Body::captionHeight) / 2;
    Drawing::label(_content.name, NSMakeRect(left, top, room, Body::nameHeight));
    Drawing::wrappedLabel(_content.caption,
                          NSMakeRect(left, top + Body::nameHeight, room, 2 * Body::captionHeight));
    if (hasIndicator) [self drawIndicator];
}

- (void)drawIndicator {
    const NSPoint centre = [self indicatorCentre];
    if (_content.indicator.kind == Kind::touchID) {
        if (_prompt) return;
        Drawing::symbol({.name = "touchid",
                         .size = IndicatorContent::size,
                         .ink = {lockInk, OrvelUI::Palette::islandFieldTextOpacity}},
                        centre);
        return;
    }
    Drawing::ring(centre, Spinner::diameter, Spinner::stroke, 0, 1, {lockInk, 0.2});
    Drawing::ring(centre, Spinner::diameter, Spinner::stroke, _turn, 0.28, {lockInk});
}

@end
