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

/// Whether somebody holds off what happens to an idle session: a video, a call, a presentation.
/// Followed by the services' own signals; nothing is asked twice while nothing changes. Main thread
/// only.
class IdleInhibitors {
  public:
    IdleInhibitors();
    ~IdleInhibitors();

    /// Other processes than this one, as far as a service tells whose request it is. False until it
    /// is known, and for a service that is not there.
    bool areHeld() const;

  private:
    class Source;

    Source& follow(QDBusConnection bus, QDBusMessage question, bool (*read)(const QDBusMessage&));
    void followSession(const QDBusConnection& session);

    std::vector<std::unique_ptr<Source>> sources_;
    /// Two of them; null without a session bus.
    Source* plasma_ = nullptr;
    Source* powerManagement_ = nullptr;
    std::unique_ptr<ScreenSaverService> service_;
    SaverSuspensions suspensions_;
};

}  // namespace OrvelSystem
