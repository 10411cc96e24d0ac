// Declares what GNUstep lacks of the frameworks that the tested sources use. Included before every
// file. Scripted.mm has the definitions.
#pragma once

#import <AppKit/AppKit.h>

using CFTypeRef = const void*;
using CFTypeID = unsigned long;
using CFIndex = long;
using CFDictionaryRef = const struct __CFDictionary*;
using CFArrayRef = const struct __CFArray*;
using CFAllocatorRef = const struct __CFAllocator*;
using CGRect = NSRect;
using dispatch_queue_t = struct KarvoMainQueue*;

constexpr auto NSCompositingOperationCopy = NSCompositeCopy;
constexpr CFAllocatorRef kCFAllocatorDefault = nullptr;

extern "C" {
CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeID CFBooleanGetTypeID(void);
/// Only arrays of numbers, without callbacks.
CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count, const void* callbacks);
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
void CFRelease(CFTypeRef array);

dispatch_queue_t dispatch_get_main_queue(void);
/// Runs the block in the main run loop.
void dispatch_async(dispatch_queue_t, void (^block)(void));
}

@interface NSTimer (Missing)
@property NSTimeInterval tolerance;
@end

/// Tasks never start.
@interface NSTask (Missing)
@property(copy) NSURL* executableURL;
- (BOOL)launchAndReturnError:(NSError**)error;
@end

// Drawing. There are no symbols of the system, so that the program draws its own.

constexpr auto NSCompositingOperationSourceOver = NSCompositeSourceOver;
constexpr auto NSWindingRuleEvenOdd = NSEvenOddWindingRule;
constexpr auto NSLineCapStyleRound = NSRoundLineCapStyle;
constexpr auto NSLineJoinStyleRound = NSRoundLineJoinStyle;
constexpr auto NSStringDrawingTruncatesLastVisibleLine = NSStringDrawingOptions{};

inline NSStringDrawingOptions operator|(NSStringDrawingOptions a, NSStringDrawingOptions b) {
    return static_cast<NSStringDrawingOptions>(static_cast<int>(a) | static_cast<int>(b));
}

@interface NSFont (Missing)
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
@end

@interface NSString (Missing)
- (NSRect)boundingRectWithSize:(NSSize)size
                       options:(NSStringDrawingOptions)options
                    attributes:(NSDictionary*)attributes
                       context:(id)context;
- (void)drawWithRect:(NSRect)rect
             options:(NSStringDrawingOptions)options
          attributes:(NSDictionary*)attributes
             context:(id)context;
@end

@interface NSImageSymbolConfiguration : NSObject
+ (instancetype)configurationWithPointSize:(CGFloat)size weight:(NSFontWeight)weight;
+ (instancetype)configurationWithPaletteColors:(NSArray*)colors;
- (instancetype)configurationByApplyingConfiguration:(NSImageSymbolConfiguration*)other;
@end

@interface NSImage (Missing)
/// Nil.
+ (NSImage*)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)text;
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
@end
