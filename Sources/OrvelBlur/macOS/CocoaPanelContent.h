#pragma once

#include <functional>
#include <utility>

#import <AppKit/AppKit.h>

#include "OrvelBlur/OverlayPanel.h"

namespace OrvelBlur {

/// Content as a Cocoa view, which is dark in any appearance of the system, like the panels.
class CocoaPanelContent final : public PanelContent {
  public:
    /// Returns the view's place in a panel of that size, in points from the panel's top left.
    using Placement = std::function<NSRect(NSSize panel)>;

    CocoaPanelContent(NSView* view, Placement placement)
        : view_(view), placement_(std::move(placement)) {
        view_.appearance = [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua];
    }

    NSView* view() const { return view_; }
    NSRect placement(NSSize panel) const { return placement_(panel); }

  private:
    NSView* view_;
    Placement placement_;
};

}  // namespace OrvelBlur
