#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <memory>

#include "OrvelModes/Windows/AppWindow.h"
#include "OrvelUI/Qt/WindowView.h"

namespace OrvelModes {

/// An ordinary window of Qt around one view. The view is there only while the window is not closed,
/// so that a closed window costs nothing.
class LiveAppWindow final : public AppWindow {
  public:
    /// A view with its size as a hint. May be made more than once.
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
