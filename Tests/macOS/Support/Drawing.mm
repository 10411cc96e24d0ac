// What GNUstep lacks for drawing.
#import <AppKit/AppKit.h>

@implementation NSFont (Missing)
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight {
    return weight > NSFontWeightRegular ? [NSFont boldSystemFontOfSize:size]
                                        : [NSFont systemFontOfSize:size];
}
@end

@implementation NSString (Missing)
- (NSRect)boundingRectWithSize:(NSSize)size
                       options:(NSStringDrawingOptions)options
                    attributes:(NSDictionary*)attributes
                       context:(id)context {
    const NSSize needed = [self sizeWithAttributes:attributes];
    return NSMakeRect(0, 0, std::min(needed.width, size.width),
                      std::min(needed.height, size.height));
}
- (void)drawWithRect:(NSRect)rect
             options:(NSStringDrawingOptions)options
          attributes:(NSDictionary*)attributes
             context:(id)context {
    [self drawInRect:rect withAttributes:attributes];
}
@end

@implementation NSImageSymbolConfiguration
+ (instancetype)configurationWithPointSize:(CGFloat)size weight:(NSFontWeight)weight {
    return [[self alloc] init];
}
+ (instancetype)configurationWithPaletteColors:(NSArray*)colors {
    return [[self alloc] init];
}
- (instancetype)configurationByApplyingConfiguration:(NSImageSymbolConfiguration*)other {
    return self;
}
@end

@implementation NSImage (Missing)
+ (NSImage*)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)text {
    return nil;
}
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration {
    return self;
}
@end
