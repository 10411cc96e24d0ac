#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

/// A non-blocking client of the session's watcher for status items: tells whether a host draws
/// items, and registers an item. Main thread only.
class StatusNotifierWatcher {
  public:
    static StatusNotifierWatcher& shared();

    /// Whether a host draws status items; `nullopt` while that is unknown.
    std::optional<bool> isHostRegistered() const { return isHostRegistered_; }
    /// Registers the item with that bus name now, and again whenever a watcher appears, until the
    /// token is destroyed. A registered item disappears when its bus name does.
    [[nodiscard]] OrvelCore::Subscription announce(const QString& service);
    /// Calls `changed` after each change of `isHostRegistered` until the token is destroyed.
    [[nodiscard]] OrvelCore::Subscription observe(std::function<void()> changed);

  private:
    StatusNotifierWatcher();
    void watcherAppeared();
    void askForHost();
    void set(std::optional<bool> isHostRegistered);
    void send(const QString& service) const;

    std::optional<bool> isHostRegistered_;
    OrvelCore::WeakList<QString> items_;
    OrvelCore::WeakList<std::function<void()>> observers_;
    OrvelCore::Subscription owner_;
    OrvelCore::Subscription hostCame_;
    OrvelCore::Subscription hostWent_;
};

}  // namespace OrvelSystem
