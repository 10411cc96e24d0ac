#pragma once

#include <cstdint>

#include <xcb/xcb.h>

#include "OrvelBlur/X11/RenderServer.h"
#include "OrvelSystem/X11/WindowRepair.h"

namespace OrvelBlur {

/// The window of a panel on the X server: an override-redirect child of the root without a
/// background. Frames are in root coordinates, in pixels. Main thread only.
class PanelWindow {
  public:
    /// Makes the window, unmapped. `level` (see `WindowLevel`) is only stated as a property of the
    /// window; `StackPosition` puts it into effect.
    PanelWindow(const PixelRect& frame, int level);
    ~PanelWindow();
    PanelWindow(const PanelWindow&) = delete;
    PanelWindow& operator=(const PanelWindow&) = delete;

    /// Changes when the window is replaced.
    xcb_window_t id() const { return id_; }
    int level() const { return level_; }

    /// The wanted frame. The server has it after the next `place`.
    const PixelRect& frame() const { return frame_; }
    void setFrame(const PixelRect& frame) { frame_ = frame; }
    /// The whole wanted frame, relative to itself.
    PixelRect bounds() const { return {0, 0, frame_.width, frame_.height}; }
    /// The frame that was last sent to the server.
    const PixelRect& placedFrame() const { return placedFrame_; }
    void place();

    /// Whether the panel belongs to a window of another program and covers exactly that window.
    bool isAttached() const { return isAttached_; }
    void setAttached(bool attached) { isAttached_ = attached; }

    bool isMapped() const { return isMapped_; }
    void map();
    void unmap();

    /// The picture for drawing into the window; 0 on a server without Render.
    xcb_render_picture_t picture() const { return picture_.id(); }
    /// Fills the window without Render. The alpha of `color` is ignored.
    void fill(const OrvelCore::Color& color);

    /// Undoes what another client has done to the window, except to its order and its content.
    /// `hasShape`: whether the program has given the window a bounding shape.
    OrvelSystem::WindowChange repair(const xcb_generic_event_t& event, bool hasShape) const;
    /// Makes a new window, unmapped and at the wanted frame, after another client has destroyed
    /// this one. Call `unmap` before.
    void replace();

  private:
    void make();
    void setProperties();

    xcb_window_t id_ = XCB_NONE;
    int level_;
    PixelRect frame_;
    PixelRect placedFrame_;
    bool isAttached_ = false;
    bool isMapped_ = false;
    ServerPicture picture_;
};

}  // namespace OrvelBlur
