#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "OrvelBlur/OverlayPanel.h"
#include "OrvelCore/Geometry.h"

namespace OrvelModes {

/// One overlay of a blur mode, as large as a display. Main thread only.
class ModeSurface {
  public:
    ModeSurface() = default;
    ModeSurface(const ModeSurface&) = delete;
    ModeSurface& operator=(const ModeSurface&) = delete;
    virtual ~ModeSurface() = default;

    /// Its number in the window server's list of windows.
    virtual std::int64_t windowNumber() const = 0;
    /// Nothing takes the content away.
    virtual void setContent(std::shared_ptr<OrvelBlur::PanelContent> content) = 0;
    /// In window-server coordinates.
    virtual void place(const OrvelCore::Rect& rect) = 0;
    /// `duration` in seconds; 0 shows or hides at once.
    virtual void show(double duration) = 0;
    /// A surface that is dropped while it fades still fades to the end.
    virtual void hide(double duration) = 0;
    virtual void takeKeyboard() = 0;
    /// Directly below a window of the server, of this or any program.
    virtual void order(std::int64_t below) = 0;
    virtual void orderFront() = 0;
    /// Parts where nothing of the surface shows, in window-server coordinates; empty for none.
    virtual void leaveOpen(const std::vector<OrvelCore::Rect>& parts) = 0;

    /// Escape, while the surface has the keyboard.
    std::function<void()> onCancel;
};

}  // namespace OrvelModes
