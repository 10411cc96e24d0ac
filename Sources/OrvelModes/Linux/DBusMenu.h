#pragma once

#include <QDBusConnection>
#include <memory>

#include "OrvelModes/StatusItem/StatusMenu.h"

namespace OrvelModes {

/// The plain menu as an object of the bus, for whoever draws it: a desktop's panel. Its interface
/// is com.canonical.dbusmenu. Main thread only.
class DBusMenu {
  public:
    /// The controller outlives the menu.
    DBusMenu(StatusMenuController& controller, QDBusConnection bus, const QString& path);
    ~DBusMenu();

  private:
    class Object;
    std::unique_ptr<Object> object_;
    QDBusConnection bus_;
    QString path_;
};

}  // namespace OrvelModes
