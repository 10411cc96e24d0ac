#pragma once

#include <QWidget>
#include <QWindow>
#include <functional>
#include <memory>

#include <xcb/xcb.h>

#include "OrvelBlur/Qt/QtPanelContent.h"
#include "OrvelBlur/X11/RenderServer.h"

namespace OrvelBlur {

/// The Qt widget of a panel, in a child window of it. The child draws off screen; the panel puts
/// its picture on top of the other layers. Keys, focus and accessibility stay Qt's own.
class ContentHost final : public QObject {
  public:
    /// `cancelled` hears of each Escape that the widget has not used.
    ContentHost(xcb_window_t panel, PixelSize panelSize,
                std::shared_ptr<const QtPanelContent> content, std::function<void()> cancelled);
    ~ContentHost() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

    xcb_window_t window() const { return window_; }
    /// In the panel, in pixels.
    const PixelRect& frame() const { return frame_; }
    /// What the child shows now; nothing without Composite, where it draws for itself.
    xcb_render_picture_t picture() const { return picture_.id(); }
    void panelResized(PixelSize panelSize);
    /// True if the event said that the child has drawn; it will say so again for the next drawing.
    bool takeDamage(const xcb_generic_event_t& event);
    /// Whether another client has unmapped or destroyed the child, which Qt cannot undo. A child
    /// that was moved is put back.
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
    ServerPixmap pixmap_;
    ServerPicture picture_;
    ServerDamage damage_;
};

}  // namespace OrvelBlur
