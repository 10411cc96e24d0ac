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

/// Never nil; bytes that are no UTF-8 give an empty string.
NSString* string(std::string_view utf8);
/// Empty for nil.
std::string string(NSString* text);

/// Points; 0 without a display. The height that converts between the two coordinate systems.
double primaryHeight();
/// To coordinates with the origin at the bottom left of the primary display.
NSRect rect(const OrvelCore::Rect& windowServer);
/// To coordinates with the origin at its top left.
OrvelCore::Rect rect(NSRect cocoa);
OrvelCore::Point point(NSPoint cocoa);

NSColor* color(const OrvelCore::Color& color);

/// Null for nil and for an image that cannot be drawn. `side` in pixels: at most so many in each
/// direction.
std::shared_ptr<const Picture> picture(NSImage* image, int side);
/// Nil for a picture without pixels. The size is that of the picture, in points.
NSImage* image(const Picture& picture);

/// Kinds of which no property list is made become `std::monostate`.
PropertyValue propertyValue(id value);
/// Empty for anything that is no dictionary.
PropertyValue::Dictionary dictionary(id value);

}  // namespace OrvelSystem::Cocoa
