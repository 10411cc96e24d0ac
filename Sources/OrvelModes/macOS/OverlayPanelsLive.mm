#import <AppKit/AppKit.h>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/macOS/CocoaPanelContent.h"
#include "OrvelModes/Blur/HotCornerController.h"
#include "OrvelModes/Feedback/ToastPresenter.h"
#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/macOS/Appearance.h"
#include "OrvelSystem/macOS/Cocoa.h"
#include "OrvelSystem/macOS/Displays.h"
#import "OrvelUI/macOS/NoticePillView.h"

/// Detects the pointer, whether or not the program is active.
@interface OrvelCornerView : NSView
@property(nonatomic) OrvelModes::CornerPanel* owner;
@end

@implementation OrvelCornerView

- (void)updateTrackingAreas {
    [super updateTrackingAreas];
    for (NSTrackingArea* area in self.trackingAreas) [self removeTrackingArea:area];
    [self addTrackingArea:[[NSTrackingArea alloc]
                              initWithRect:self.bounds
                                   options:NSTrackingMouseEnteredAndExited |
                                           NSTrackingActiveAlways | NSTrackingInVisibleRect
                                     owner:self
                                  userInfo:nil]];
}

- (void)mouseEntered:(NSEvent*)event {
    if (!self.owner) return;
    const auto call = self.owner->onEnter;
    call();
}

- (void)mouseExited:(NSEvent*)event {
    if (!self.owner) return;
    const auto call = self.owner->onExit;
    call();
}

@end

namespace OrvelModes {

using OrvelBlur::OverlayPanel;
namespace Appearance = OrvelSystem::Appearance;

namespace {

NSRect whole(NSSize panel) {
    return NSMakeRect(0, 0, panel.width, panel.height);
}

class LiveCornerPanel final : public CornerPanel {
  public:
    LiveCornerPanel() : view_([[OrvelCornerView alloc] initWithFrame:NSMakeRect(0, 0, 1, 1)]) {
        view_.owner = this;
        panel_->setOpacity(OverlayPanel::Layer::tint, 0);
        panel_->setOpacity(OverlayPanel::Layer::grain, 0);
        // A window without any drawn pixel gets no mouse events.
        panel_->setBackdrop(OverlayPanel::Fill{{.alpha = 0.01}});
        panel_->setContent(std::make_shared<OrvelBlur::CocoaPanelContent>(view_, whole));
    }
    LiveCornerPanel(const LiveCornerPanel&) = delete;
    LiveCornerPanel& operator=(const LiveCornerPanel&) = delete;
    ~LiveCornerPanel() override { view_.owner = nullptr; }

    void place(const OrvelCore::Rect& rect) override {
        panel_->setFrame(rect);
        panel_->orderFrontRegardless();
    }

  private:
    OrvelCornerView* view_;
    std::unique_ptr<OverlayPanel> panel_ =
        OverlayPanel::make({0, 0, 1, 1}, OrvelBlur::WindowLevel::hotCorner);
};

class LiveToastPanel final : public ToastPanel {
  public:
    LiveToastPanel() {
        panel_->setIgnoresMouseEvents(true);
        panel_->setOpacity(OverlayPanel::Layer::tint, 0);
        panel_->setOpacity(OverlayPanel::Layer::grain, 0);
    }
    void show(const OrvelUI::NoticePillContent& notice, const OrvelCore::Rect& display) override {
        const auto notch = OrvelUI::notchOf(OrvelSystem::Display::screenAt({display.x, display.y}));
        OrvelNoticePillView* const view = [[OrvelNoticePillView alloc] initWithContent:notice
                                                                                 notch:notch
                                                                                 onTap:{}];
        const NSRect place = [view placementIn:NSMakeSize(display.width, display.height)];
        panel_->setFrame(
            {display.x + place.origin.x, display.y, place.size.width, place.size.height});
        panel_->setContent(std::make_shared<OrvelBlur::CocoaPanelContent>(view, whole));
        setAlpha(1);
        panel_->orderFrontRegardless();
    }
    void setAlpha(double alpha) override {
        panel_->setOpacity(OverlayPanel::Layer::content, alpha);
    }
    void orderOut() override {
        panel_->orderOut();
        panel_->setContent(nullptr);
    }

  private:
    std::unique_ptr<OverlayPanel> panel_ =
        OverlayPanel::make({0, 0, 1, 1}, OrvelBlur::WindowLevel::toast);
};

}  // namespace

std::unique_ptr<CornerPanel> makeLiveCornerPanel() {
    return std::make_unique<LiveCornerPanel>();
}

ToastSystem ToastSystem::live() {
    return {.makePanel = [] { return std::make_unique<LiveToastPanel>(); },
            .screens = OrvelSystem::Display::frames,
            .pointer = OrvelSystem::PointerState::location,
            .reduceMotion = [] { return Appearance::reducesMotion(); },
            .increasedContrast = [] { return Appearance::increasesContrast(); }};
}

}  // namespace OrvelModes
