#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <memory>

#include "OrvelModes/Windows/AppWindow.h"
#include "OrvelUI/Qt/WindowView.h"

namespace OrvelModes {

/// An ordinary Qt window around one view. The view exists only while the window is open, so that a
/// closed window costs nothing.
class LiveAppWindow final : public AppWindow {
  public:
    /// Makes a view whose size hint is its size. May be called more than once.
    using MakeView = std::function<std::unique_ptr<OrvelUI::WindowView>()>;

    LiveAppWindow(const QString& title, bool minimizes, MakeView makeView);
    ~LiveAppWindow() override;

    void center() override;
    void makeKeyAndOrderFront() override;
    void orderFrontRegardless() override;
    void setLevel(Level level) override;
    bool isVisible() const override;
    void close() override;

    QWidget& widget() const;

  private:
    class Window;
    std::unique_ptr<Window> window_;
};

}  // namespace OrvelModes
