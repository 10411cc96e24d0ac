#pragma once

#include <QDBusConnection>
#include <QString>
#include <functional>
#include <memory>

#include "OrvelCore/MenuRules.h"
#include "OrvelCore/WeakList.h"

namespace OrvelModes {

/// The status item as a D-Bus object with the interface org.kde.StatusNotifierItem, which the
/// desktop's panel draws. Main thread only.
class StatusNotifierItem {
  public:
    struct Handlers {
        /// A point on or near the item, in pixels of the screen; 0, 0 if the panel does not report
        /// one.
        std::function<void(int x, int y)> activate;
        std::function<void(int x, int y)> contextMenu;
    };

    /// `menuPath` is the object path of the item's menu on the same connection.
    StatusNotifierItem(QDBusConnection bus, const QString& menuPath, Handlers handlers);
    ~StatusNotifierItem();

    void setState(OrvelCore::MenuBarIconState state);
    /// Announces the item to all current and future panels, or withdraws it.
    void setVisible(bool visible);
    bool isVisible() const { return announcement_ != nullptr; }

  private:
    class Object;
    std::unique_ptr<Object> object_;
    QDBusConnection bus_;
    QString service_;
    OrvelCore::Subscription announcement_;
    OrvelCore::Subscription appearance_;
};

}  // namespace OrvelModes
