#pragma once

#include <QPixmap>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

#include "OrvelBlur/Qt/QtPanelContent.h"
#include "OrvelCore/Color.h"

namespace OrvelBlur {

/// A window with an opaque fill, a colour with grain, and content on top. The caller gives its
/// surface a role, see `Compositor::showWithoutRole`.
class FilledWindow final : public QWidget {
  public:
    /// The opacity of `color` is ignored. `nullopt` leaves everything but the content transparent.
    explicit FilledWindow(const std::optional<OrvelCore::Color>& color);

    /// Null removes the content. The widget is made after the fill has been drawn.
    void setContent(std::shared_ptr<const QtPanelContent> content);
    /// Removes the content and draws the window at once.
    void clear();
    /// Call it when the surface is configured. Draws this size, in logical pixels, at once, and
    /// every change from then on.
    void fill(const QSize& area);
    /// Call it before the role is destroyed, because nothing may be drawn without a role.
    void stopDrawing();
    /// Passes a key event to the content as if this window had received it.
    void deliver(QKeyEvent& event);

    /// Called with each key event that the content has not used.
    std::function<void(QKeyEvent&)> onKey = [](QKeyEvent&) {};
    std::function<void()> onClick = [] {};

    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    void makeContent();
    void placeContent();
    bool correctBufferScale();

    QPixmap tile_;  // null if the window is transparent
    std::shared_ptr<const QtPanelContent> content_;
    std::unique_ptr<QWidget> widget_;
    bool isFilled_ = false;
    double paintedScale_ = 0;  // device pixels per logical pixel
};

}  // namespace OrvelBlur
