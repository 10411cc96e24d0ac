// What views need and GNUstep lacks, or does otherwise than macOS.
#import <AppKit/AppKit.h>

#include "Support/Scripted.h"

#include <chrono>

#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"
#pragma clang diagnostic ignored "-Wobjc-property-implementation"

@interface KarvoCall : NSObject
@property(nonatomic, copy) void (^block)(void);
@end
@implementation KarvoCall
- (void)run {
    self.block();
}
@end

extern "C" {
dispatch_queue_t dispatch_get_main_queue(void) {
    return nil;
}
void dispatch_async(dispatch_queue_t, dispatch_block_t block) {
    @autoreleasepool {
        KarvoCall* const call = [[KarvoCall alloc] init];
        call.block = block;
        [call performSelectorOnMainThread:@selector(run) withObject:nil waitUntilDone:NO];
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

@implementation NSTextField (Karvo)
+ (instancetype)wrappingLabelWithString:(NSString*)text {
    NSTextField* const label = [[self alloc] initWithFrame:NSZeroRect];
    label.stringValue = text;
    label.editable = NO;
    label.bezeled = NO;
    label.drawsBackground = NO;
    [label.cell setWraps:YES];
    return label;
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

@implementation NSButton (Karvo)
+ (instancetype)buttonWithTitle:(NSString*)title target:(id)target action:(SEL)action {
    NSButton* const button = [[self alloc] initWithFrame:NSZeroRect];
    button.title = title;
    return button;
}
@end

@implementation NSSlider (Karvo)
+ (instancetype)sliderWithValue:(double)value
                       minValue:(double)least
                       maxValue:(double)most
                         target:(id)target
                         action:(SEL)action {
    NSSlider* const slider = [[self alloc] initWithFrame:NSZeroRect];
    slider.minValue = least;
    slider.maxValue = most;
    slider.doubleValue = value;
    return slider;
}
@end

@implementation NSImageView (Karvo)
+ (instancetype)imageViewWithImage:(NSImage*)image {
    NSImageView* const view = [[self alloc] initWithFrame:NSZeroRect];
    view.image = image;
    return view;
}
@end

/// GNUstep's scrollers take room from the content, and hide and show themselves for ever.
@implementation NSScrollView (Karvo)
- (void)setAutohidesScrollers:(BOOL)hides {
    self.hasVerticalScroller = NO;
}
@end

/// Draws an image that is a function.
@interface KarvoDrawing : NSObject
@property(nonatomic, copy) BOOL (^handler)(NSRect);
@property(nonatomic) NSSize size;
@end
@implementation KarvoDrawing
- (void)draw:(NSCustomImageRep*)image {
    NSAffineTransform* const transform = [NSAffineTransform transform];
    [transform translateXBy:0 yBy:self.size.height];
    [transform scaleXBy:1 yBy:-1];
    [transform concat];
    self.handler(NSMakeRect(0, 0, self.size.width, self.size.height));
}
@end

@implementation NSImage (Karvo)
+ (instancetype)imageWithSize:(NSSize)size
                      flipped:(BOOL)flipped
               drawingHandler:(BOOL (^)(NSRect))handler {
    static NSMutableArray* const all = [NSMutableArray array];
    KarvoDrawing* const drawing = [[KarvoDrawing alloc] init];
    drawing.handler = handler;
    drawing.size = size;
    [all addObject:drawing];
    NSCustomImageRep* const content =
        [[NSCustomImageRep alloc] initWithDrawSelector:@selector(draw:) delegate:drawing];
    content.size = size;
    NSImage* const image = [[self alloc] initWithSize:size];
    [image addRepresentation:content];
    return image;
}
@end

// Layout and activation.

@interface NSView (Karvo)
- (void)layOutParts;
@end
@implementation NSView (Karvo)
- (void)layout {
}
- (void)layOutParts {
    [self layout];
    for (NSView* part in self.subviews) [part layOutParts];
}
- (void)setNeedsLayout:(BOOL)needs {
    __weak NSView* const weak = self;
    if (needs)
        dispatch_async(nil, ^{
          [weak layOutParts];
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
@interface KarvoWorkspace : NSObject
@property(readonly) NSNotificationCenter* notificationCenter;
@end
@implementation KarvoWorkspace
- (NSNotificationCenter*)notificationCenter {
    static NSNotificationCenter* const center = [[NSNotificationCenter alloc] init];
    return center;
}
@end
@implementation NSWorkspace (Karvo)
+ (NSWorkspace*)sharedWorkspace {
    static id const workspace = [[KarvoWorkspace alloc] init];
    return workspace;
}
@end
