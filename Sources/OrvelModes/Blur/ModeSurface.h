#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelModes {

/// One overlay of a blur mode, as large as a display. Main thread only.
class ModeSurface {
  public:
    ModeSurface() = default;
    ModeSurface(const ModeSurface&) = delete;
    ModeSurface& operator=(const ModeSurface&) = delete;
    virtual ~ModeSurface() = default;

    /// The surface's number in the window server's list of windows.
    virtual OrvelCore::WindowID windowNumber() const = 0;
    /// Null removes the content.
    virtual void setContent(std::shared_ptr<OrvelBlur::PanelContent> content) = 0;
    /// In window-server coordinates.
    virtual void place(const OrvelCore::Rect& rect) = 0;
    /// `duration` of the fade in seconds; 0 for none.
    virtual void show(double duration) = 0;
    /// `duration` as in `show`. A surface that is destroyed during the fade still fades out
    /// completely.
    virtual void hide(double duration) = 0;
    virtual void takeKeyboard() = 0;
    /// Puts the surface directly below the window with the number `below`, of this or another
    /// program.
    virtual void order(OrvelCore::WindowID below) = 0;
    virtual void orderFront() = 0;
    /// Areas where nothing of the surface is shown, in window-server coordinates; empty for none.
    virtual void leaveOpen(const std::vector<OrvelCore::Rect>& parts) = 0;

    /// Called for Escape while the surface has the keyboard.
    std::function<void()> onCancel;
};

}  // namespace OrvelModes
