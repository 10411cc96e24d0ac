#pragma once

#include <QMenu>
#include <QPoint>
#include <memory>

#include "OrvelModes/StatusItem/StatusMenu.h"

namespace OrvelModes {

/// The plain menu as a window of our own, for panels that do not draw menus themselves. Main thread
/// only.
class ContextMenu {
  public:
    /// The controller outlives the menu.
    explicit ContextMenu(StatusMenuController& controller) : controller_(controller) {}

    /// `at` is in Qt's coordinates.
    void show(QPoint at);

  private:
    void add(QMenu& menu, const std::vector<StatusMenuEntry>& entries);

    StatusMenuController& controller_;
    std::unique_ptr<QMenu> menu_;
};

}  // namespace OrvelModes
