#include "OrvelSystem/macOS/Cocoa.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace OrvelSystem::Cocoa {

NSString* string(std::string_view utf8) {
    NSString* const text = [[NSString alloc] initWithBytes:utf8.data()
                                                    length:utf8.size()
                                                  encoding:NSUTF8StringEncoding];
    return text ? text : @"";
}

std::string string(NSString* text) {
    const char* const bytes = text.UTF8String;
    return bytes ? bytes : "";
}

double primaryHeight() {
    NSScreen* const primary = NSScreen.screens.firstObject;
    return primary ? primary.frame.size.height : 0;
}

NSRect rect(const OrvelCore::Rect& windowServer) {
    const auto flipped = OrvelCore::Geometry::cocoaRect(windowServer, primaryHeight());
    return NSMakeRect(flipped.x, flipped.y, flipped.width, flipped.height);
}

OrvelCore::Rect rect(NSRect cocoa) {
    return OrvelCore::Geometry::cocoaRect(
        {cocoa.origin.x, cocoa.origin.y, cocoa.size.width, cocoa.size.height}, primaryHeight());
}

OrvelCore::Point point(NSPoint cocoa) {
    return OrvelCore::Geometry::cgPoint({cocoa.x, cocoa.y}, primaryHeight());
}

NSColor* color(const OrvelCore::Color& color) {
    return [NSColor colorWithSRGBRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

NSBitmapImageRep* bitmap(int width, int height) {
    return [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                   pixelsWide:width
                                                   pixelsHigh:height
                                                bitsPerSample:8
                                              samplesPerPixel:4
                                                     hasAlpha:YES
                                                     isPlanar:NO
                                               colorSpaceName:NSDeviceRGBColorSpace
                                                  bytesPerRow:4 * width
                                                 bitsPerPixel:32];
}

namespace {

std::uint32_t straight(const unsigned char* pixel) {
    const std::uint32_t alpha = pixel[3];
    const auto channel = [alpha](std::uint32_t value) {
        return alpha == 0 ? 0U : std::min(255U, (value * 255 + alpha / 2) / alpha);
    };
    return alpha << 24 | channel(pixel[0]) << 16 | channel(pixel[1]) << 8 | channel(pixel[2]);
}

}  // namespace

std::shared_ptr<const Picture> picture(NSImage* image, int side) {
    const NSSize size = image ? image.size : NSMakeSize(0, 0);
    if (!(size.width > 0 && size.height > 0)) return nullptr;
    const double scale = side / std::max(size.width, size.height);
    const int width = std::max(1, static_cast<int>(std::lround(size.width * scale)));
    const int height = std::max(1, static_cast<int>(std::lround(size.height * scale)));
    NSBitmapImageRep* const target = bitmap(width, height);
    NSGraphicsContext* const context =
        target ? [NSGraphicsContext graphicsContextWithBitmapImageRep:target] : nil;
    if (!context) return nullptr;
    [NSGraphicsContext saveGraphicsState];
    NSGraphicsContext.currentContext = context;
    [image drawInRect:NSMakeRect(0, 0, width, height)
             fromRect:NSZeroRect
            operation:NSCompositingOperationCopy
             fraction:1];
    [NSGraphicsContext restoreGraphicsState];
    auto result = std::make_shared<Picture>();
    result->width = width;
    result->height = height;
    const unsigned char* const bytes = target.bitmapData;
    for (int i = 0; i < width * height; ++i) result->pixels.push_back(straight(bytes + 4 * i));
    return result;
}

NSImage* image(const Picture& picture) {
    const auto count = static_cast<std::size_t>(std::max(picture.width, 0)) *
                       static_cast<std::size_t>(std::max(picture.height, 0));
    if (count == 0 || picture.pixels.size() < count) return nil;
    NSBitmapImageRep* const source = bitmap(picture.width, picture.height);
    if (!source) return nil;
    unsigned char* to = source.bitmapData;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t pixel = picture.pixels[i];
        const std::uint32_t alpha = pixel >> 24;
        for (const unsigned shift : {16U, 8U, 0U})
            *to++ = static_cast<unsigned char>((pixel >> shift & 0xFFU) * alpha / 255);
        *to++ = static_cast<unsigned char>(alpha);
    }
    NSImage* const result =
        [[NSImage alloc] initWithSize:NSMakeSize(picture.width, picture.height)];
    [result addRepresentation:source];
    return result;
}

PropertyValue propertyValue(id value) {
    if ([value isKindOfClass:[NSString class]]) return string(static_cast<NSString*>(value));
    if ([value isKindOfClass:[NSNumber class]]) {
        NSNumber* const number = value;
        // A boolean is an `NSNumber` too, but has a type of its own.
        if (CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID())
            return static_cast<bool>(number.boolValue);
        if (std::strchr("fd", number.objCType[0])) return number.doubleValue;
        return static_cast<std::int64_t>(number.longLongValue);
    }
    if ([value isKindOfClass:[NSData class]]) {
        NSData* const data = value;
        const auto* const bytes = static_cast<const std::byte*>(data.bytes);
        return PropertyValue::Data(bytes, bytes + data.length);
    }
    if ([value isKindOfClass:[NSArray class]]) {
        PropertyValue::Array array;
        for (id element in static_cast<NSArray*>(value)) array.push_back(propertyValue(element));
        return array;
    }
    if ([value isKindOfClass:[NSDictionary class]]) return dictionary(value);
    return {};
}

PropertyValue::Dictionary dictionary(id value) {
    PropertyValue::Dictionary result;
    if (![value isKindOfClass:[NSDictionary class]]) return result;
    NSDictionary* const source = value;
    for (id key in source)
        if ([key isKindOfClass:[NSString class]])
            result.emplace(string(static_cast<NSString*>(key)), propertyValue(source[key]));
    return result;
}

}  // namespace OrvelSystem::Cocoa
