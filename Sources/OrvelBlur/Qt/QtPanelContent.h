#pragma once

#include <QRect>
#include <QWidget>
#include <functional>
#include <memory>
#include <utility>

#include "OrvelBlur/OverlayPanel.h"

namespace OrvelBlur {

/// Content as a Qt widget. The widget is made only after the panel hides what is behind it, because
/// hiding must not wait for it.
class QtPanelContent final : public PanelContent {
  public:
    /// The widget must have no parent and a translucent background.
    using Make = std::function<std::unique_ptr<QWidget>()>;
    /// Returns the widget's place in a panel of that size, in Qt's (scaled) units.
    using Placement = std::function<QRect(const QWidget& widget, const QSize& panel)>;

    QtPanelContent(Make make, Placement placement)
        : make_(std::move(make)), placement_(std::move(placement)) {}

    std::unique_ptr<QWidget> makeWidget() const { return make_(); }
    QRect placement(const QWidget& widget, const QSize& panel) const {
        return placement_(widget, panel);
    }

  private:
    Make make_;
    Placement placement_;
};

}  // namespace OrvelBlur
