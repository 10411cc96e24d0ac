#pragma once

#include <QDBusConnection>
#include <QString>
#include <functional>
#include <memory>

#include "OrvelCore/MenuRules.h"

namespace OrvelModes {

/// The status item as an object of the bus, for the desktop's panel to draw. Its interface is
/// org.kde.StatusNotifierItem. Main thread only.
class StatusNotifierItem {
  public:
    struct Handlers {
        /// A place on or near the item in pixels of the screen; 0, 0 where the panel tells none.
        std::function<void(int x, int y)> activate;
        std::function<void(int x, int y)> contextMenu;
    };

    /// `menuPath` is where the item's menu is on the same connection.
    StatusNotifierItem(QDBusConnection bus, const QString& menuPath, Handlers handlers);
    ~StatusNotifierItem();

    void setState(OrvelCore::MenuBarIconState state);
    /// Announces the item to whoever draws such items, now and in future, or takes it away.
    void setVisible(bool visible);
    bool isVisible() const { return announcement_ != nullptr; }

  private:
    class Object;
    std::unique_ptr<Object> object_;
    QDBusConnection bus_;
    QString service_;
    std::shared_ptr<void> announcement_;
    std::shared_ptr<void> appearance_;
};

}  // namespace OrvelModes
