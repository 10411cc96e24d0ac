#include <functional>
#include <string>
#include <utility>

#import <AppKit/AppKit.h>
#include <gmock/gmock.h>

#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelUI/macOS/CocoaDrawing.h"
#include "OrvelUI/macOS/SceneDrawing.h"

#include "Snapshot.h"

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

Snapshot draw(const char* name, double width, double height, std::function<void(NSRect)> drawing) {
    KarvoCanvas* const view = [[KarvoCanvas alloc] initWithFrame:NSZeroRect];
    view.drawing = std::move(drawing);
    return {view, NSMakeSize(width, height), name};
}

TEST(Drawing, TheCardOfALockedPictureHangsFromItsTop) {
    auto look = OrvelCore::OverlayLook::standardLock;
    look.solid = true;
    const Snapshot picture = draw("scene", 480, 300, [&](NSRect rect) {
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
        const Snapshot picture =
            draw(hidden ? "menu-bar-hidden" : "menu-bar", MenuBarDrawing::size.width,
                 MenuBarDrawing::size.height,
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
    const Snapshot picture = draw("label", 200, 60, [](NSRect) {
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
