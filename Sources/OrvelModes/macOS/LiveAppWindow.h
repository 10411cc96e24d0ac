#pragma once

#include <memory>

#import <AppKit/AppKit.h>

#include "OrvelCore/WeakList.h"
#include "OrvelModes/Windows/AppWindow.h"

namespace OrvelModes {

/// An ordinary window that is kept when it is closed.
class LiveAppWindow final : public AppWindow {
  public:
    explicit LiveAppWindow(NSWindow* window);
    ~LiveAppWindow() override;

    NSWindow* window() const { return window_; }

    void center() override { [window_ center]; }
    void makeKeyAndOrderFront() override { [window_ makeKeyAndOrderFront:nil]; }
    void orderFrontRegardless() override { [window_ orderFrontRegardless]; }
    void setLevel(Level level) override {
        window_.level = level == Level::floating ? NSFloatingWindowLevel : NSNormalWindowLevel;
    }
    bool isVisible() const override { return window_.isVisible; }
    void close() override { [window_ close]; }

  private:
    NSWindow* window_;
    OrvelCore::Subscription closing_;
};

}  // namespace OrvelModes
