#pragma once

#include <QString>
#include <functional>
#include <list>
#include <memory>
#include <optional>

#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

/// The session's watcher of status items, followed without waiting: whether anybody draws the
/// items, and where to announce one. Main thread only.
class StatusNotifierWatcher {
  public:
    static StatusNotifierWatcher& shared();

    /// Whether a host draws status items; nothing while that is not known.
    std::optional<bool> isHostRegistered() const { return isHostRegistered_; }
    /// Announces the item of that bus name, now and whenever a watcher appears, until the token is
    /// dropped. The item goes when its bus name goes.
    [[nodiscard]] std::shared_ptr<void> announce(const QString& service);
    /// `changed` hears of each change of `isHostRegistered` until the token is dropped.
    [[nodiscard]] std::shared_ptr<void> observe(std::function<void()> changed);

  private:
    StatusNotifierWatcher();
    void watcherAppeared();
    void askForHost();
    void set(std::optional<bool> isHostRegistered);
    void send(const QString& service) const;

    std::optional<bool> isHostRegistered_;
    std::list<std::weak_ptr<const QString>> items_;
    std::list<std::weak_ptr<std::function<void()>>> observers_;
    DBus::Subscription owner_;
    DBus::Subscription hostCame_;
    DBus::Subscription hostWent_;
};

}  // namespace OrvelSystem
