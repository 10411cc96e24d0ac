#pragma once

#include <QDBusConnection>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

#include "OrvelSystem/Linux/DBus.h"
#include "OrvelSystem/Linux/ScreenSaverService.h"
#include "OrvelSystem/X11/SaverSuspensions.h"

namespace OrvelSystem {

/// Tracks whether a program inhibits the actions of an idle session, as video players, calls and
/// presentations do. Each service's signals trigger a new request; nothing is polled. Main thread
/// only.
class IdleInhibitors {
  public:
    IdleInhibitors();
    ~IdleInhibitors();

    /// Whether a process other than this one holds an inhibitor; if a service does not say which
    /// process holds it, any inhibitor counts. False until the first answers have arrived, and for
    /// services that are not running.
    bool areHeld() const;

  private:
    class Source;

    Source& follow(QDBusConnection bus, QDBusMessage question, bool (*read)(const QDBusMessage&));
    void followSession(const QDBusConnection& session);

    std::vector<std::unique_ptr<Source>> sources_;
    /// Two elements of `sources_`; null without a session bus.
    Source* plasma_ = nullptr;
    Source* powerManagement_ = nullptr;
    std::unique_ptr<ScreenSaverService> service_;
    SaverSuspensions suspensions_;
};

}  // namespace OrvelSystem
