#pragma once

#include <QWidget>
#include <QWindow>
#include <functional>
#include <memory>

#include <xcb/xcb.h>

#include "OrvelBlur/Qt/QtPanelContent.h"
#include "OrvelBlur/X11/RenderServer.h"

namespace OrvelBlur {

/// Hosts a panel's Qt widget in a child window of the panel. The child draws off screen, and the
/// panel composites its picture over the other layers. Qt still handles keys, focus and
/// accessibility.
class ContentHost final : public QObject {
  public:
    /// `cancelled` is called for each Escape that the widget has not used. `panelSize` is in
    /// pixels.
    ContentHost(xcb_window_t panel, PixelSize panelSize,
                std::shared_ptr<const QtPanelContent> content, std::function<void()> cancelled);
    ~ContentHost() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

    xcb_window_t window() const { return window_; }
    /// Relative to the panel, in pixels.
    const PixelRect& frame() const { return frame_; }
    /// What the child shows now. 0 until Qt has painted it, and without Composite, where the child
    /// draws on the screen itself.
    xcb_render_picture_t picture() const;
    /// Call after the panel was resized; `panelSize` is in pixels.
    void panelResized(PixelSize panelSize);
    /// Returns true if the event reports that the child has drawn, and arms the report of the next
    /// drawing.
    bool takeDamage(const xcb_generic_event_t& event);
    /// Whether another client has unmapped or destroyed the child, which Qt cannot undo. Also moves
    /// a child back that another client has moved.
    bool isEndedBy(const xcb_generic_event_t& event) const;
    void focus();

  private:
    void place();
    void namePicture();

    PixelSize panelSize_;
    std::shared_ptr<const QtPanelContent> content_;
    std::function<void()> cancelled_;
    std::unique_ptr<QWindow> foreignPanel_;
    std::unique_ptr<QWidget> widget_;
    xcb_window_t window_ = 0;
    PixelRect frame_;
    bool isPainted_ = false;  // since the server made the present pixmap
    ServerPixmap pixmap_;
    ServerPicture picture_;
    ServerDamage damage_;
};

}  // namespace OrvelBlur
