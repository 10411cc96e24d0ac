#pragma once

#include <QImage>
#include <QWidget>

#include "OrvelCore/MenuRules.h"
#include "OrvelUI/MenuBarDrawing.h"
#include "OrvelUI/MenuBarIcon.h"
#include "OrvelUI/Palette.h"

namespace OrvelUI {

namespace Drawing {

/// The status item's glyph in a square image; `side` is in pixels.
QImage menuBarIcon(OrvelCore::MenuBarIconState state, int side, const Palette::Ink& ink);

}  // namespace Drawing

/// A picture of a menu bar with the program's icon, or without space for it. It uses the whole
/// width of the widget.
class MenuBarDrawingWidget final : public QWidget {
  public:
    explicit MenuBarDrawingWidget(QWidget* parent = nullptr);

    void setContent(const MenuBarDrawing& content);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    MenuBarDrawing content_;
};

}  // namespace OrvelUI
