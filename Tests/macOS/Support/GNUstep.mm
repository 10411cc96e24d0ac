// What views need and GNUstep lacks, or does otherwise than macOS.
#include <chrono>

#import <AppKit/AppKit.h>

#include "Support/Scripted.h"

#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"
#pragma clang diagnostic ignored "-Wobjc-property-implementation"

extern "C" {
dispatch_queue_t dispatch_get_main_queue(void) {
    return nil;
}
void dispatch_async(dispatch_queue_t, dispatch_block_t block) {
    @autoreleasepool {
        [(id)[block copy] performSelectorOnMainThread:@selector(invoke)
                                           withObject:nil
                                        waitUntilDone:NO];
    }
}
}

// Text. GNUstep numbers alignments otherwise, so that the middle is its right.

@implementation NSFont (Karvo)
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight {
    return weight > NSFontWeightRegular ? [NSFont boldSystemFontOfSize:size]
                                        : [NSFont systemFontOfSize:size];
}
@end

@implementation NSString (Karvo)
- (NSRect)boundingRectWithSize:(NSSize)size
                       options:(NSStringDrawingOptions)options
                    attributes:(NSDictionary*)attributes
                       context:(NSStringDrawingContext*)context {
    NSAttributedString* const text = [[NSAttributedString alloc] initWithString:self
                                                                     attributes:attributes];
    return [text boundingRectWithSize:NSMakeSize(size.width, 10000) options:options];
}
- (void)drawWithRect:(NSRect)rect
             options:(NSStringDrawingOptions)options
          attributes:(NSDictionary*)attributes
             context:(NSStringDrawingContext*)context {
    [self drawInRect:rect withAttributes:attributes];
}
@end

@implementation NSMutableParagraphStyle (Karvo)
- (void)setAlignment:(NSTextAlignment)alignment {
    const NSInteger other = alignment == NSTextAlignmentCenter  ? NSTextAlignmentRight
                            : alignment == NSTextAlignmentRight ? NSTextAlignmentCenter
                                                                : alignment;
    [self setValue:@(other) forKey:@"_alignment"];
}
@end

// Controls.

/// GNUstep gives a text one line.
@implementation NSTextFieldCell (Karvo)
- (NSSize)cellSizeForBounds:(NSRect)bounds {
    const NSSize needed =
        [self.attributedStringValue boundingRectWithSize:bounds.size
                                                 options:NSStringDrawingUsesLineFragmentOrigin]
            .size;
    return NSMakeSize(needed.width + 8, needed.height + (self.isBezeled ? 6 : 2));
}
@end

/// GNUstep does not ask the delegate of a field.
@implementation NSTextView (Karvo)
- (void)doCommandBySelector:(SEL)command {
    NSTextField* const field = (id)self.delegate;
    id<NSTextFieldDelegate> const owner =
        [field isKindOfClass:[NSTextField class]] ? field.delegate : nil;
    if (![owner control:field textView:self doCommandBySelector:command])
        [self tryToPerform:command with:nil];
}
@end

/// GNUstep's scrollers take room from the content, and hide and show themselves for ever.
@implementation NSScrollView (Karvo)
- (void)setAutohidesScrollers:(BOOL)hides {
    self.hasVerticalScroller = NO;
}
@end

/// Draws an image that is a function.
@interface KarvoDrawing : NSImageRep
@property(nonatomic, copy) BOOL (^handler)(NSRect);
@end
@implementation KarvoDrawing
- (BOOL)draw {
    NSAffineTransform* const transform = [NSAffineTransform transform];
    [transform translateXBy:0 yBy:self.size.height];
    [transform scaleXBy:1 yBy:-1];
    [transform concat];
    return self.handler(NSMakeRect(0, 0, self.size.width, self.size.height));
}
@end
@implementation NSImage (Karvo)
+ (instancetype)imageWithSize:(NSSize)size
                      flipped:(BOOL)flipped
               drawingHandler:(BOOL (^)(NSRect))handler {
    KarvoDrawing* const content = [[KarvoDrawing alloc] init];
    content.handler = handler;
    content.size = size;
    NSImage* const image = [[self alloc] initWithSize:size];
    [image addRepresentation:content];
    return image;
}
@end

// Layout and activation.

@implementation NSView (Karvo)
- (void)layout {
}
- (void)layoutSubtreeIfNeeded {
    [self layout];
    for (NSView* part in self.subviews) [part layoutSubtreeIfNeeded];
}
- (void)setNeedsLayout:(BOOL)needs {
    __weak NSView* const weak = self;
    if (needs)
        dispatch_async(nil, ^{
          [weak layoutSubtreeIfNeeded];
        });
}
@end

@implementation NSProcessInfo (Karvo)
- (NSTimeInterval)systemUptime {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}
@end

@implementation NSApplication (Karvo)
- (void)activate {
    [self activateIgnoringOtherApps:YES];
}
@end

// GNUstep's own centres need other processes, which tests do not start.
@implementation NSDistributedNotificationCenter (Karvo)
+ (NSNotificationCenter*)defaultCenter {
    static NSNotificationCenter* const center = [[NSNotificationCenter alloc] init];
    return center;
}
@end
@implementation NSWorkspace (Karvo)
- (NSNotificationCenter*)notificationCenter {
    static NSNotificationCenter* const center = [[NSNotificationCenter alloc] init];
    return center;
}
@end
