#include <string>
#include <vector>

#import <AppKit/AppKit.h>
#include <gmock/gmock.h>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/macOS/CocoaPanelContent.h"

#include "Support/Scripted.h"

namespace OrvelBlur {
namespace {

class OverlayPanelTest : public testing::Test {
  protected:
    static NSWindow* windowOf(const OverlayPanel& panel) {
        return [NSApp windowWithWindowNumber:static_cast<NSInteger>(panel.windowNumber())];
    }
    std::unique_ptr<OverlayPanel> panel_ = OverlayPanel::make({10, 20, 300, 200}, 25);
};

TEST_F(OverlayPanelTest, KeepsItsFrameAndItsLevel) {
    for (const auto& frame : {OrvelCore::Rect{10, 20, 300, 200}, OrvelCore::Rect{-40, 0, 90, 70},
                              OrvelCore::Rect{0, 0, 800, 600}}) {
        panel_->setFrame(frame);
        panel_->orderFrontRegardless();
        EXPECT_EQ(panel_->frame(), frame);
        EXPECT_EQ(NSMaxY(windowOf(*panel_).frame),
                  NSScreen.screens.firstObject.frame.size.height - frame.y);
    }
    EXPECT_EQ(panel_->level(), 25);
    EXPECT_TRUE(panel_->isVisible());
    panel_->orderOut();
    EXPECT_FALSE(panel_->isVisible());
}

TEST_F(OverlayPanelTest, IsKeyOnlyWhileItAcceptsTheKeyboard) {
    int changes = 0;
    panel_->onKeyChanged = [&] { ++changes; };
    panel_->makeKeyAndOrderFront();
    EXPECT_FALSE(panel_->isKeyWindow());
    panel_->acceptsKeyboard = true;
    panel_->makeKeyAndOrderFront();
    Scripted::runUntil([&] { return panel_->isKeyWindow(); });
    EXPECT_GE(changes, 1);
    const int before = changes;
    [windowOf(*panel_) resignKeyWindow];
    EXPECT_GT(changes, before);
}

TEST_F(OverlayPanelTest, TellsOfClicksAndOfEscapeAndMayEndInTheHandler) {
    NSView* const content = [[NSView alloc] initWithFrame:NSZeroRect];
    panel_->setContent(std::make_shared<CocoaPanelContent>(
        content, [](NSSize size) { return NSMakeRect(10, 0, size.width - 20, 30); }));
    panel_->setFrame({0, 0, 400, 100});
    EXPECT_EQ(content.frame.size.width, 380);
    // The content is at the top, whose height Cocoa counts from the bottom.
    NSWindow* const window = windowOf(*panel_);
    EXPECT_EQ([content convertRect:content.bounds toView:nil].origin.y, 70);

    std::vector<std::string> told;
    panel_->onClick = [&] { told.push_back("click"); };
    panel_->onCancel = [&] {
        told.push_back("cancel");
        panel_.reset();
    };
    [[window.contentView hitTest:NSMakePoint(5, 95)] mouseDown:[[NSEvent alloc] init]];
    [window cancelOperation:nil];
    EXPECT_THAT(told, testing::ElementsAre("click", "cancel"));
    [window cancelOperation:nil];
    EXPECT_EQ(told.size(), 2U);
}

}  // namespace
}  // namespace OrvelBlur
