#pragma once

#include <QRect>
#include <QWidget>
#include <functional>
#include <memory>
#include <utility>

#include "OrvelBlur/OverlayPanel.h"

namespace OrvelBlur {

/// Content as a Qt widget. It is made only after the panel has hidden what lies behind it, since
/// hiding is what must not wait.
class QtPanelContent final : public PanelContent {
  public:
    /// The widget has no parent and a translucent background.
    using Make = std::function<std::unique_ptr<QWidget>()>;
    /// Where it stands in a panel of that size, in the widget's own (scaled) units.
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
