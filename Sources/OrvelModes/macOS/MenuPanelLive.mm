#include <utility>

#import <AppKit/AppKit.h>
#include <unistd.h>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelBlur/macOS/CocoaPanelContent.h"
#include "OrvelModes/StatusItem/MenuPanelPresenter.h"
#include "OrvelSystem/PointerState.h"
#include "OrvelSystem/Workspace.h"
#import "OrvelUI/macOS/MenuPanelView.h"

namespace OrvelModes {

using OrvelBlur::OverlayPanel;
using OrvelSystem::Workspace;

namespace {

/// On every desktop and in full screen, and hidden during the overview.
constexpr std::uint32_t panelBehavior = 329;

class LiveMenuPanel final : public MenuPanelSurface {
  public:
    explicit LiveMenuPanel(OrvelUI::MenuPanelModel& model) : model_(model) {
        panel_->setCollectionBehavior(panelBehavior);
        panel_->setOpacity(OverlayPanel::Layer::tint, 0);
        panel_->setOpacity(OverlayPanel::Layer::grain, 0);
        panel_->onCancel = [this] { onCancel(); };
    }
    void renewView() override {
        view_ = [[OrvelMenuPanelView alloc] initWithModel:&model_];
        panel_->setContent(std::make_shared<OrvelBlur::CocoaPanelContent>(
            view_, [](NSSize size) { return NSMakeRect(0, 0, size.width, size.height); }));
    }
    OrvelCore::Size fittingSize(double room) override { return [view_ fittingSize:room]; }
    void setFrame(const OrvelCore::Rect& frame) override { panel_->setFrame(frame); }
    void orderFront(bool takesKeyboard) override {
        panel_->acceptsKeyboard = takesKeyboard;
        if (!takesKeyboard) return panel_->orderFrontRegardless();
        const auto front = Workspace::shared().frontmostApplication();
        previous_ = front && front->pid != getpid() ? std::optional(front->pid) : std::nullopt;
        [NSApp activate];
        panel_->makeKeyAndOrderFront();
    }
    void orderOut(bool handBack) override {
        panel_->acceptsKeyboard = false;
        panel_->orderOut();
        if (const auto pid = std::exchange(previous_, std::nullopt); pid && handBack)
            Workspace::shared().activate(*pid);
    }

  private:
    OrvelUI::MenuPanelModel& model_;
    std::unique_ptr<OverlayPanel> panel_ =
        OverlayPanel::make({0, 0, 10, 10}, OrvelBlur::WindowLevel::toast);
    OrvelMenuPanelView* view_ = nil;
    /// The app that was in front when the panel took the keyboard; `nullopt` if there was none.
    std::optional<std::int64_t> previous_;
};

/// A global monitor receives the presses in other apps, a local one those in this app.
OrvelCore::Subscription watchMousePresses(std::function<void(OrvelCore::Point)> pressed) {
    constexpr NSEventMask mask = NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown;
    const auto tell = [pressed = std::move(pressed)] {
        // The handler may destroy the token, and with it this monitor.
        const auto call = pressed;
        call(OrvelSystem::PointerState::location());
    };
    id global = [NSEvent addGlobalMonitorForEventsMatchingMask:mask
                                                       handler:^(NSEvent*) {
                                                         tell();
                                                       }];
    id local = [NSEvent addLocalMonitorForEventsMatchingMask:mask
                                                     handler:^NSEvent*(NSEvent* event) {
                                                       tell();
                                                       return event;
                                                     }];
    return {nullptr, [global, local](void*) {
                if (global) [NSEvent removeMonitor:global];
                if (local) [NSEvent removeMonitor:local];
            }};
}

}  // namespace

MenuPanelSystem MenuPanelSystem::live() {
    return {.makePanel = [](OrvelUI::MenuPanelModel& model) -> std::unique_ptr<MenuPanelSurface> {
                return std::make_unique<LiveMenuPanel>(model);
            },
            .watchPresses = watchMousePresses,
            .watchActivations =
                [](std::function<void(std::int64_t)> activated) {
                    return Workspace::shared().observe({.activated = std::move(activated)});
                },
            .ownPID = getpid()};
}

}  // namespace OrvelModes
