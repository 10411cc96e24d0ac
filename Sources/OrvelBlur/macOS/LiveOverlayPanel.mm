#include <utility>
#include <variant>

#import <AppKit/AppKit.h>
#import <QuartzCore/QuartzCore.h>

#include "OrvelBlur/macOS/CocoaPanelContent.h"
#import "OrvelBlur/macOS/PanelWindow.h"
#include "OrvelBlur/macOS/SkyLight.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelBlur {

namespace Cocoa = OrvelSystem::Cocoa;

namespace {

constexpr NSAutoresizingMaskOptions fills = NSViewWidthSizable | NSViewHeightSizable;

/// Its layers, from back to front, are the backdrop, a tint, a grain and the content. The window
/// server shows each change at the end of a turn of the loop, so `display` has nothing to do.
class LiveOverlayPanel final : public OverlayPanel {
  public:
    LiveOverlayPanel(const OrvelCore::Rect& frame, int level)
        : panel_([[OrvelPanel alloc] initWithContentRect:Cocoa::rect(frame)
                                               styleMask:NSWindowStyleMaskNonactivatingPanel
                                                 backing:NSBackingStoreBuffered
                                                   defer:NO]),
          root_(
              [[OrvelPanelRoot alloc] initWithFrame:NSMakeRect(0, 0, frame.width, frame.height)]) {
        panel_.owner = this;
        panel_.level = level;
        panel_.opaque = NO;
        panel_.backgroundColor = NSColor.clearColor;
        panel_.hasShadow = NO;
        panel_.animationBehavior = NSWindowAnimationBehaviorNone;
        panel_.releasedWhenClosed = NO;
        panel_.hidesOnDeactivate = NO;
        setCollectionBehavior(CollectionBehavior::overlay);
        root_.owner = this;
        root_.autoresizingMask = fills;
        root_.wantsLayer = YES;
        tint_ = [[NSView alloc] initWithFrame:root_.bounds];
        tint_.wantsLayer = YES;
        grain_ = [[OrvelGrainView alloc] initWithFrame:root_.bounds];
        for (NSView* layer in @[ tint_, grain_ ]) {
            layer.autoresizingMask = fills;
            [root_ addSubview:layer];
        }
        panel_.contentView = root_;
        [panel_ setFrame:Cocoa::rect(frame) display:NO];
    }
    ~LiveOverlayPanel() override {
        panel_.owner = nullptr;
        root_.owner = nullptr;
        [panel_ orderOut:nil];
    }

    OrvelCore::Rect frame() const override { return Cocoa::rect(panel_.frame); }
    void setFrame(const OrvelCore::Rect& frame) override {
        [panel_ setFrame:Cocoa::rect(frame) display:YES];
        placeContent();
    }
    int level() const override { return static_cast<int>(panel_.level); }
    void setCollectionBehavior(std::uint32_t behavior) override {
        panel_.collectionBehavior = static_cast<NSWindowCollectionBehavior>(behavior);
    }
    OrvelCore::WindowID windowNumber() const override { return panel_.windowNumber; }
    bool owns(OrvelCore::WindowID number) const override { return number == windowNumber(); }

    bool ignoresMouseEvents() const override { return panel_.ignoresMouseEvents; }
    void setIgnoresMouseEvents(bool ignores) override { panel_.ignoresMouseEvents = ignores; }

    void setBackdrop(const Backdrop& backdrop) override {
        [effect_ removeFromSuperview];
        effect_ = nil;
        panel_.opaque = NO;
        if (const auto* const fill = std::get_if<Fill>(&backdrop)) {
            panel_.backgroundColor = Cocoa::color(fill->color);
        } else if (std::holds_alternative<VisualEffect>(backdrop)) {
            panel_.backgroundColor = NSColor.clearColor;
            effect_ = [[NSVisualEffectView alloc] initWithFrame:root_.bounds];
            effect_.blendingMode = NSVisualEffectBlendingModeBehindWindow;
            effect_.material = NSVisualEffectMaterialFullScreenUI;
            effect_.state = NSVisualEffectStateActive;
            effect_.autoresizingMask = fills;
            [root_ addSubview:effect_ positioned:NSWindowBelow relativeTo:tint_];
        } else {
            // The window server blurs only behind pixels that are drawn.
            panel_.backgroundColor = [NSColor colorWithWhite:0 alpha:0.01];
        }
    }
    bool setRadius(int radius) override { return SkyLight::setRadius(radius, panel_.windowNumber); }
    void setTint(const OrvelCore::Color& tint) override {
        tint_.layer.backgroundColor = Cocoa::color(tint).CGColor;
    }
    void setCornerRadius(double radius) override {
        root_.layer.cornerRadius = radius;
        root_.layer.cornerCurve = kCACornerCurveContinuous;
        root_.layer.masksToBounds = radius > 0;
    }
    void setOpenings(const std::vector<OrvelCore::Rect>& openings) override {
        if (openings.empty()) {
            root_.layer.mask = nil;
            return;
        }
        const OrvelCore::Rect own = frame();
        NSBezierPath* const path = [NSBezierPath bezierPathWithRect:root_.bounds];
        for (const auto& opening : openings)
            [path appendBezierPathWithRect:NSMakeRect(opening.x - own.x, opening.y - own.y,
                                                      opening.width, opening.height)];
        CAShapeLayer* const mask = [CAShapeLayer layer];
        mask.fillRule = kCAFillRuleEvenOdd;
        mask.path = path.CGPath;
        root_.layer.mask = mask;
    }
    void setOpacity(Layer layer, double opacity) override {
        NSView* const view = layer == Layer::effect  ? effect_
                             : layer == Layer::tint  ? tint_
                             : layer == Layer::grain ? grain_
                                                     : contentView();
        view.alphaValue = opacity;
    }
    void setContent(std::shared_ptr<PanelContent> content) override {
        [contentView() removeFromSuperview];
        content_ = std::dynamic_pointer_cast<CocoaPanelContent>(content);
        if (!content_) return;
        placeContent();
        [root_ addSubview:contentView()];
    }
    void display() override {}

    bool isVisible() const override { return panel_.isVisible; }
    void orderFrontRegardless() override { [panel_ orderFrontRegardless]; }
    void orderOut() override { [panel_ orderOut:nil]; }
    void orderAbove(OrvelCore::WindowID number) override {
        [panel_ orderWindow:NSWindowAbove relativeTo:static_cast<NSInteger>(number)];
    }
    void orderBelow(OrvelCore::WindowID number) override {
        [panel_ orderWindow:NSWindowBelow relativeTo:static_cast<NSInteger>(number)];
    }
    void makeKeyAndOrderFront() override { [panel_ makeKeyAndOrderFront:nil]; }
    bool isKeyWindow() const override { return panel_.isKeyWindow; }

  private:
    NSView* contentView() const { return content_ ? content_->view() : nil; }
    void placeContent() {
        if (content_) contentView().frame = content_->placement(root_.bounds.size);
    }

    OrvelPanel* panel_;
    OrvelPanelRoot* root_;
    NSVisualEffectView* effect_ = nil;
    NSView* tint_ = nil;
    NSView* grain_ = nil;
    std::shared_ptr<CocoaPanelContent> content_;
};

}  // namespace

std::unique_ptr<OverlayPanel> OverlayPanel::make(const OrvelCore::Rect& frame, int level) {
    return std::make_unique<LiveOverlayPanel>(frame, level);
}

}  // namespace OrvelBlur
