#pragma once

#include <QMenu>
#include <QPoint>
#include <memory>

#include "OrvelModes/StatusItem/StatusMenu.h"

namespace OrvelModes {

/// The plain menu in a window of this program, for panels that do not draw menus. Main thread only.
class ContextMenu {
  public:
    /// `controller` must outlive the menu.
    explicit ContextMenu(StatusMenuController& controller) : controller_(controller) {}

    /// `at` is in Qt's coordinates.
    void show(QPoint at);

  private:
    void add(QMenu& menu, const std::vector<StatusMenuEntry>& entries);

    StatusMenuController& controller_;
    std::unique_ptr<QMenu> menu_;
};

}  // namespace OrvelModes
