#pragma once

#include <QScrollArea>
#include <QWidget>
#include <map>
#include <string>
#include <vector>

#include "OrvelCore/Observed.h"
#include "OrvelUI/MenuPanelContent.h"
#include "OrvelUI/Qt/MenuPanelRowWidget.h"

namespace OrvelUI {

/// The card of the status item's panel. Observes its model, which must outlive it, and calls the
/// model's `onResize` when it needs another height.
class MenuPanelView final : public QWidget {
  public:
    MenuPanelView(MenuPanelModel& model, bool reduceMotion, bool increasedContrast,
                  QWidget* parent = nullptr);

    const MenuPanelContent& content() const { return content_; }
    /// The needed size in Qt units; `room` is the available height.
    QSize fittingSize(double room) const;
    /// The outline of the card, in Qt units.
    QPainterPath outline() const;
    /// Gives the focus to the first control.
    void focusFirst();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void changed();
    void refresh();
    void layOut();
    void setTabOrders();
    MenuPanelRowWidget* makeRow(QWidget* parent);

    MenuPanelModel& model_;
    bool reduceMotion_;
    bool increasedContrast_;
    MenuPanelContent content_;
    bool isStale_ = false;
    MenuPanelRowWidget* header_;
    MenuPanelRowWidget* footer_;
    QScrollArea* scroller_;
    QWidget* body_;
    std::map<std::string, MenuPanelRowWidget*> rows_;
    std::vector<OrvelCore::Subscription> observations_;
};

}  // namespace OrvelUI
