#include "OrvelSystem/SessionEvents.h"

#include "OrvelSystem/Linux/DBus.h"
#include "OrvelSystem/Linux/SessionState.h"

namespace OrvelSystem {

// Lockers set the LockedHint of the logind session while the screen is locked. When the hint is
// cleared, that proves nothing: any program of the session can write it, and it is also cleared
// when a locker crashes, gives up or fails to start. The session's Unlock signal proves no more,
// since any program of the user can make logind send it. So the end of a lock is always reported as
// unproven.
class SessionEvents::Watch {
  public:
    explicit Watch(SessionEvents& owner) : owner_(owner) {
        sleep_ =
            DBus::onSignal(QDBusConnection::systemBus(), SessionState::manager(),
                           QStringLiteral("PrepareForSleep"), [this](const QDBusMessage& message) {
                               const auto starting = message.arguments().value(0);
                               if (starting.toBool())
                                   owner_.onSleep();
                               else
                                   owner_.onWake();
                           });
    }

  private:
    // Also called when logind ends, which ends the lock without a proof.
    void stateChanged() {
        const bool isLocked = state_.isLocked();
        if (isLocked == wasLocked_) return;
        wasLocked_ = isLocked;
        if (isLocked)
            owner_.onMacOSLocked();
        else
            owner_.onMacOSLockUnknown();
    }

    SessionEvents& owner_;
    bool wasLocked_ = false;
    OrvelCore::Subscription sleep_;
    SessionState state_{[this] { stateChanged(); }, [this] { owner_.onLockRequested(); }};
};

SessionEvents::SessionEvents() : watch_(std::make_unique<Watch>(*this)) {}

SessionEvents::~SessionEvents() = default;

void SessionEvents::screensChanged() {
    if (watch_) onScreensChanged();
}

void SessionEvents::stop() {
    watch_.reset();
}

}  // namespace OrvelSystem
