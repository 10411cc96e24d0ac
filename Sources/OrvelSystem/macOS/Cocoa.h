#pragma once

#include <memory>
#include <string>
#include <string_view>

#import <AppKit/AppKit.h>

#include "OrvelCore/Color.h"
#include "OrvelCore/Geometry.h"
#include "OrvelSystem/Picture.h"
#include "OrvelSystem/PropertyValue.h"

/// Conversions between portable values and those of Cocoa.
namespace OrvelSystem::Cocoa {

/// Never nil; invalid UTF-8 gives an empty string.
NSString* string(std::string_view utf8);
/// Empty for nil.
std::string string(NSString* text);

/// The height of the primary display in points, which converts between the two coordinate systems;
/// 0 without a display.
double primaryHeight();
/// To Cocoa coordinates, with the origin at the bottom left of the primary display.
NSRect rect(const OrvelCore::Rect& windowServer);
/// To window-server coordinates, with the origin at the top left of the primary display.
OrvelCore::Rect rect(NSRect cocoa);
OrvelCore::Point point(NSPoint cocoa);

NSColor* color(const OrvelCore::Color& color);

/// Premultiplied RGBA; rows start at the top. Nil if there is no memory for it.
NSBitmapImageRep* bitmap(int width, int height);
/// Scales the image so that its longer side is `side` pixels. Null for nil and for an image that
/// cannot be drawn.
std::shared_ptr<const Picture> picture(NSImage* image, int side);
/// Nil for a picture without pixels. One pixel of the picture is one point of the image.
NSImage* image(const Picture& picture);

/// Types that cannot occur in a property list, and dates, become `std::monostate`.
PropertyValue propertyValue(id value);
/// Empty if `value` is not a dictionary.
PropertyValue::Dictionary dictionary(id value);

}  // namespace OrvelSystem::Cocoa
