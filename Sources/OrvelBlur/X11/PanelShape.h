#pragma once

#include <vector>

#include <xcb/shape.h>

#include "OrvelBlur/X11/PanelWindow.h"
#include "OrvelCore/Geometry.h"

namespace OrvelBlur {

/// The shape of a panel's window: where it shows something, and where it takes pointer events. No
/// setter sends a request; `apply` does. Without the Shape extension the window stays a rectangle
/// that takes all pointer events.
class PanelShape {
  public:
    /// `window` must outlive this object.
    explicit PanelShape(const PanelWindow& window) : window_(window) {}

    /// Each setter returns whether the value is new.
    ///
    /// In pixels; 0 for square corners. Corners of a panel that is attached to a window stay
    /// square.
    bool setCornerRadius(double radius);
    /// Where nothing of the panel is shown, in root coordinates, in pixels; empty for none.
    bool setOpenings(const std::vector<OrvelCore::Rect>& openings);
    bool setIgnoresMouseEvents(bool ignores);
    bool ignoresMouseEvents() const { return ignoresMouseEvents_; }

    /// Whether the window shows less than its rectangle.
    bool isShaped() const;
    /// Whether the shape has to be applied again after the window's frame was `before`.
    bool differsFrom(const PixelRect& before) const;
    /// Sends the shape for the wanted frame of the window.
    void apply() const;

  private:
    int cornerPixels() const;
    std::vector<xcb_rectangle_t> rows() const;
    std::vector<xcb_rectangle_t> openingsInWindow() const;

    const PanelWindow& window_;
    double cornerRadius_ = 0;
    std::vector<OrvelCore::Rect> openings_;
    bool ignoresMouseEvents_ = false;
};

}  // namespace OrvelBlur
