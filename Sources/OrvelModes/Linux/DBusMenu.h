#pragma once

#include <QDBusConnection>
#include <memory>

#include "OrvelModes/StatusItem/StatusMenu.h"

namespace OrvelModes {

/// The plain menu as a D-Bus object with the interface com.canonical.dbusmenu, which the desktop's
/// panel draws. Main thread only.
class DBusMenu {
  public:
    /// `controller` must outlive the menu.
    DBusMenu(StatusMenuController& controller, QDBusConnection bus, const QString& path);
    ~DBusMenu();

  private:
    class Object;
    std::unique_ptr<Object> object_;
    QDBusConnection bus_;
    QString path_;
};

}  // namespace OrvelModes
