#pragma once

#include <QPixmap>
#include <QWidget>
#include <functional>
#include <memory>

#include "OrvelBlur/Qt/QtPanelContent.h"
#include "OrvelCore/Color.h"

namespace OrvelBlur {

/// A window that hides all behind it: a colour with the grain over it, and content on top. A role
/// for its surface is for the caller to give, see `Compositor::showWithoutRole`.
class FilledWindow final : public QWidget {
  public:
    /// The colour's opacity does not count.
    explicit FilledWindow(const OrvelCore::Color& color);

    /// Null takes the content away. The widget is made once the fill is on the screen.
    void setContent(std::shared_ptr<const QtPanelContent> content);
    /// Takes the content away and shows that at once.
    void clear();
    /// The surface is configured: fills this area, at once, and draws from now on.
    void fill(const QSize& area);
    /// The role has gone, so nothing may be drawn.
    void stopDrawing();
    /// Gives a key to the content as if it had been typed into this window.
    void deliver(QKeyEvent& event);

    /// Keys that the content has not used.
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

    QPixmap tile_;
    std::shared_ptr<const QtPanelContent> content_;
    std::unique_ptr<QWidget> widget_;
    bool isFilled_ = false;
    double paintedScale_ = 0;  // pixels for one of Qt's units
};

}  // namespace OrvelBlur
