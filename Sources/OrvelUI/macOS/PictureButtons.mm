#include <string>

#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#import "OrvelUI/macOS/FormPictures.h"
#import "OrvelUI/macOS/FormViews.h"
#include "OrvelUI/macOS/SceneDrawing.h"

namespace Cocoa = OrvelSystem::Cocoa;
namespace Drawing = OrvelUI::CocoaDrawing;

namespace OrvelUI::CocoaControls {

namespace {

// In points.
constexpr NSSize thumbnailSize{140, 88};
constexpr double thumbnailRadius = 8;

/// A button that shows only `image`; `chosen` is read out.
NSButton* pictureButton(NSImage* image, const std::string& title, const std::string& hint,
                        bool chosen, const Handler<>& choose, OrvelActionView* keeper) {
    NSButton* const button = pushButton("");
    [button setButtonType:NSButtonTypeToggle];
    button.bordered = NO;
    button.image = image;
    button.imagePosition = NSImageOnly;
    button.state = chosen ? NSControlStateValueOn : NSControlStateValueOff;
    button.accessibilityRole = NSAccessibilityCheckBoxRole;
    button.toolTip = Cocoa::string(title);
    button.accessibilityLabel = Cocoa::string(title);
    button.accessibilityHelp = Cocoa::string(hint);
    button.frame = NSMakeRect(0, 0, image.size.width, image.size.height);
    [keeper connect:button to:[choose](id) { choose(); }];
    return button;
}

// The images are drawn later, and a block does not copy what a reference refers to. So these two
// functions take values.
NSImage* thumbnail(StyleThumbnails::StyleThumbnail style, FormColors colors) {
    return [NSImage
         imageWithSize:thumbnailSize
               flipped:YES
        drawingHandler:^BOOL(NSRect all) {
          const NSRect picture = NSInsetRect(all, 3, 3);
          Drawing::lockedScene(picture, thumbnailRadius,
                               {.look = style.look, .card = 1, .showsClock = style.showsClock});
          if (style.chosen)
              Drawing::strokeRounded(NSInsetRect(picture, -1.75, -1.75), thumbnailRadius + 1.75,
                                     2.5, colors.accent());
          else
              Drawing::strokeRounded(NSInsetRect(picture, 0.5, 0.5), thumbnailRadius, 1,
                                     colors.hairline());
          return YES;
        }];
}

NSImage* cornerSpot(CornerPicker::Target target, FormColors colors) {
    return [NSImage
         imageWithSize:NSMakeSize(CornerPicker::targetSide, CornerPicker::targetSide)
               flipped:YES
        drawingHandler:^BOOL(NSRect all) {
          const double inset = (CornerPicker::targetSide - CornerPicker::spotSide) / 2 + 1;
          NSBezierPath* const spot =
              [NSBezierPath bezierPathWithOvalInRect:NSInsetRect(all, inset, inset)];
          const NSPoint centre = NSMakePoint(NSMidX(all), NSMidY(all));
          // Drawn over the desktop picture, whose colours are the same in every theme.
          [Drawing::color(target.chosen ? colors.accent() : Palette::Ink{Palette::island, 0.35})
              set];
          [spot fill];
          [Drawing::color({Palette::lockInk, target.chosen ? 1 : 0.75}) set];
          spot.lineWidth = 1.5;
          [spot stroke];
          if (target.chosen)
              Drawing::symbol({.name = "checkmark", .size = 14, .ink = colors.chip(true).text},
                              centre);
          else if (target.marked)
              Drawing::symbol(
                  {.name = "exclamationmark.triangle", .size = 13, .ink = {Palette::lockInk}},
                  centre);
          return YES;
        }];
}

}  // namespace

NSView* styleThumbnails(const StyleThumbnails& content, const FormColors& colors,
                        OrvelActionView* keeper) {
    OrvelActionView* const row = stack(false, 8);
    for (const auto& style : content.styles) {
        OrvelActionView* const column = stack(true, 2);
        column.centred = YES;
        column.maximumWidth = thumbnailSize.width;
        [column add:pictureButton(thumbnail(style, colors), style.title, style.detail, style.chosen,
                                  style.choose, keeper)];
        [column add:label({.text = style.title}, colors, NSTextAlignmentCenter)];
        [column add:label({.text = style.detail, .role = TextRole::note}, colors,
                          NSTextAlignmentCenter)];
        [row add:column];
    }
    return row;
}

NSView* cornerPicker(const CornerPicker& content, const FormColors& colors,
                     OrvelActionView* keeper) {
    NSView* const display = [[OrvelDrawnView alloc]
        initWithSize:NSMakeSize(CornerPicker::display.width, CornerPicker::display.height)
               moves:false
             drawing:[colors](NSRect rect, double) {
                 constexpr double radius = 12;
                 Drawing::desktopGradient(rect, radius);
                 Drawing::strokeRounded(NSInsetRect(rect, 0.5, 0.5), radius, 1, colors.hairline());
             }];
    for (const auto& target : content.targets) {
        NSButton* const button = pictureButton(cornerSpot(target, colors), target.title,
                                               target.hint, target.chosen, target.pick, keeper);
        const auto place = CornerPicker::place(target.corner);
        button.frame = NSMakeRect(place.x, place.y, place.width, place.height);
        [display addSubview:button];
    }
    return display;
}

}  // namespace OrvelUI::CocoaControls
