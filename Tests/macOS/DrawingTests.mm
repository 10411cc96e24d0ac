#include <cmath>
#include <functional>
#include <string>

#import <AppKit/AppKit.h>
#include <gmock/gmock.h>

#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#include "OrvelUI/macOS/SceneDrawing.h"

#include "Support/Scripted.h"

@interface KarvoCanvas : NSView
@property(nonatomic) std::function<void(NSRect)> drawing;
@end

@implementation KarvoCanvas
- (BOOL)isFlipped {
    return YES;
}
- (void)drawRect:(NSRect)dirty {
    [NSColor.whiteColor set];
    NSRectFill(self.bounds);
    self.drawing(self.bounds);
}
@end

namespace OrvelUI {
namespace {

namespace Drawing = CocoaDrawing;

/// A picture in a window. Each is saved in the folder KARVO_PICTURES, if that is set.
class Picture {
  public:
    Picture(double width, double height, std::function<void(NSRect)> drawing) {
        [NSApplication sharedApplication];
        const NSRect rect = NSMakeRect(0, 0, width, height);
        NSWindow* const window = [[NSWindow alloc] initWithContentRect:rect
                                                             styleMask:0
                                                               backing:NSBackingStoreBuffered
                                                                 defer:NO];
        KarvoCanvas* const view = [[KarvoCanvas alloc] initWithFrame:rect];
        view.drawing = std::move(drawing);
        window.contentView = view;
        [window orderFrontRegardless];
        bool isShown = false;
        Scripted::runUntil([&] { return std::exchange(isShown, true); });
        [window display];
        [view lockFocus];
        bitmap_ = [[NSBitmapImageRep alloc] initWithFocusedViewRect:rect];
        [view unlockFocus];
        [window orderOut:nil];
        const char* const folder = std::getenv("KARVO_PICTURES");
        if (!folder) return;
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        static int count = 0;
        const auto file =
            std::string(folder) + "/" + test->name() + std::to_string(++count) + ".png";
        [[bitmap_ representationUsingType:NSPNGFileType properties:@{}] writeToFile:@(file.c_str())
                                                                         atomically:YES];
    }

    /// From the top left.
    OrvelCore::Color at(double x, double y) const {
        NSColor* const color = [[bitmap_ colorAtX:static_cast<NSInteger>(x)
                                                y:static_cast<NSInteger>(y)]
            colorUsingColorSpaceName:NSDeviceRGBColorSpace];
        return {color.redComponent, color.greenComponent, color.blueComponent, 1};
    }
    /// The number of pixels in a rectangle that nearly have this colour.
    int count(NSRect rect, Palette::Value value) const {
        const auto wanted = Palette::color(value);
        int found = 0;
        for (double y = rect.origin.y; y < NSMaxY(rect); ++y)
            for (double x = rect.origin.x; x < NSMaxX(rect); ++x) {
                const auto color = at(x, y);
                found += std::abs(color.red - wanted.red) + std::abs(color.green - wanted.green) +
                             std::abs(color.blue - wanted.blue) <
                         0.1;
            }
        return found;
    }

  private:
    NSBitmapImageRep* bitmap_;
};

TEST(Drawing, TheCardOfALockedPictureHangsFromItsTop) {
    auto look = OrvelCore::OverlayLook::standardLock;
    look.solid = true;
    const Picture picture(480, 300, [&](NSRect rect) {
        Drawing::lockedScene(rect, 0, {.look = look, .card = 1, .speaks = true});
    });
    // The scene is three times its size of 160 by 100; the card is 74 wide, and 30 high.
    EXPECT_EQ(picture.count(NSMakeRect(135, 0, 9, 75), Palette::island), 9 * 75);
    EXPECT_EQ(picture.count(NSMakeRect(0, 93, 480, 207), Palette::island), 0);
    EXPECT_GT(picture.count(NSMakeRect(186, 6, 90, 42), Palette::lockInk), 100) << "no text";
    EXPECT_GT(picture.count(NSMakeRect(300, 6, 48, 42), Palette::accentDark), 20) << "no symbol";
}

TEST(Drawing, TheMenuBarShowsTheIconOnlyIfThereIsRoom) {
    for (const bool hidden : {false, true}) {
        const Picture picture(MenuBarDrawing::size.width, MenuBarDrawing::size.height,
                              [&](NSRect rect) { Drawing::menuBar(rect, {.hidden = hidden}); });
        const double bar = MenuBarDrawing::barHeight;
        const auto white = [&](double from, double to) {
            return picture.count(NSMakeRect(from, 0, to - from, bar), Palette::lockInk);
        };
        EXPECT_GT(white(215, 255), 20) << "no clock";
        EXPECT_EQ(white(12, 180), 0);  // beside the round corner
        EXPECT_EQ(white(180, 212) > 10, !hidden);
        // Below the bar the desktop gets darker towards the bottom.
        EXPECT_GT(picture.at(130, bar + 2).blue, picture.at(130, 60).blue);
    }
}

TEST(Drawing, ALabelKeepsItsTailAndARingStartsAtTheTop) {
    const Picture picture(200, 60, [](NSRect) {
        Drawing::label(
            {.text = std::string(100, 'W'), .tail = "WW", .size = 20, .ink = {Palette::island}},
            NSMakeRect(0, 0, 100, 30));
        Drawing::ring(NSMakePoint(150, 30), 40, 4, 0, 0.25, {Palette::island});
    });
    EXPECT_GT(picture.count(NSMakeRect(70, 0, 30, 30), Palette::island), 40);
    EXPECT_EQ(picture.count(NSMakeRect(102, 0, 20, 30), Palette::island), 0);
    EXPECT_GT(picture.count(NSMakeRect(152, 5, 25, 23), Palette::island), 40);
    EXPECT_EQ(picture.count(NSMakeRect(125, 5, 22, 50), Palette::island), 0);
}

}  // namespace
}  // namespace OrvelUI
