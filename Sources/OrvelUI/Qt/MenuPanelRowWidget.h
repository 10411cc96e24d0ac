#pragma once

#include <functional>
#include <vector>

#include "OrvelUI/MenuPanelContent.h"
#include "OrvelUI/Qt/IslandSwitchWidget.h"
#include "OrvelUI/Qt/PressableButton.h"

namespace OrvelUI {

/// A small button within a row: a text or a symbol.
class MenuPanelButtonWidget final : public PressableButton {
  public:
    explicit MenuPanelButtonWidget(QWidget* parent) : PressableButton(parent) {}

    void setContent(const MenuPanelButton& content, bool framed);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    MenuPanelButton content_;
    bool framed_ = false;
};

/// One row of the panel. The row itself is a button if its content has a control other than a
/// switch.
class MenuPanelRowWidget final : public PressableButton {
  public:
    using Perform = std::function<void(const MenuPanelAction&)>;

    MenuPanelRowWidget(bool reduceMotion, Perform perform, QWidget* parent);

    const MenuPanelRow& content() const { return content_; }
    void setContent(const MenuPanelRow& content);
    bool isButton() const { return content_.control && switch_ == nullptr; }
    /// The widgets in the row that the keyboard can reach, in order.
    std::vector<QWidget*> focusable() const;

  protected:
    bool hitButton(const QPoint& at) const override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void layOut();
    QRectF bounds() const;  // in points
    double end() const;     // the right limit of the texts, in points

    bool reduceMotion_;
    Perform perform_;
    MenuPanelRow content_;
    IslandSwitchWidget* switch_ = nullptr;
    std::vector<MenuPanelButtonWidget*> buttons_;
};

}  // namespace OrvelUI
