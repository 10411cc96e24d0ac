#import "OrvelBlur/macOS/PanelWindow.h"

#include <vector>

#import <QuartzCore/QuartzCore.h>

#include "OrvelBlur/Grain.h"

@implementation OrvelPanel

- (BOOL)canBecomeKeyWindow {
    return self.owner && self.owner->canBecomeKey();
}

- (BOOL)canBecomeMainWindow {
    return NO;
}

- (void)cancelOperation:(id)sender {
    if (!self.owner || !self.owner->onCancel) return;
    // The handler may destroy the panel.
    const auto call = self.owner->onCancel;
    call();
}

- (void)becomeKeyWindow {
    [super becomeKeyWindow];
    [self tellOfKey];
}

- (void)resignKeyWindow {
    [super resignKeyWindow];
    [self tellOfKey];
}

- (void)tellOfKey {
    if (!self.owner || !self.owner->onKeyChanged) return;
    const auto call = self.owner->onKeyChanged;
    call();
}

@end

@implementation OrvelPanelRoot

- (BOOL)isFlipped {
    return YES;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    return YES;
}

- (void)mouseDown:(NSEvent*)event {
    if (!self.owner || !self.owner->onClick) return;
    const auto call = self.owner->onClick;
    call();
}

@end

namespace {

NSImage* grainTile() {
    constexpr int side = OrvelBlur::Grain::tileSize;
    const auto pixels = OrvelBlur::Grain::pixels(side, OrvelBlur::Grain::seed);
    NSBitmapImageRep* const bitmap =
        [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                pixelsWide:side
                                                pixelsHigh:side
                                             bitsPerSample:8
                                           samplesPerPixel:1
                                                  hasAlpha:NO
                                                  isPlanar:NO
                                            colorSpaceName:NSDeviceWhiteColorSpace
                                               bytesPerRow:side
                                              bitsPerPixel:8];
    if (!bitmap) return nil;
    std::copy(pixels.begin(), pixels.end(), bitmap.bitmapData);
    NSImage* const tile = [[NSImage alloc] initWithSize:NSMakeSize(side, side)];
    [tile addRepresentation:bitmap];
    return tile;
}

}  // namespace

@implementation OrvelGrainView {
    CALayer* _noise;
}

- (instancetype)initWithFrame:(NSRect)frame {
    if ((self = [super initWithFrame:frame])) {
        self.wantsLayer = YES;
        NSImage* const tile = grainTile();
        if (!tile) return self;
        _noise = [CALayer layer];
        _noise.backgroundColor = [NSColor colorWithPatternImage:tile].CGColor;
        _noise.opacity = static_cast<float>(OrvelBlur::Grain::opacity);
        _noise.frame = self.bounds;
        _noise.autoresizingMask = kCALayerWidthSizable | kCALayerHeightSizable;
        [self.layer addSublayer:_noise];
    }
    return self;
}

- (NSView*)hitTest:(NSPoint)point {
    return nil;
}

@end
