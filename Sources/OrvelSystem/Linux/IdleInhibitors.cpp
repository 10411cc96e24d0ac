#include "OrvelSystem/Linux/IdleInhibitors.h"

#include <QDBusArgument>
#include <QStringList>
#include <algorithm>
#include <utility>

#include <unistd.h>

#include "OrvelCore/Lifetime.h"
#include "OrvelSystem/Linux/SessionState.h"

namespace OrvelSystem {

namespace {

// Flags of the enumerations that GNOME's session manager and Plasma's policy agent define.
constexpr uint gnomeIdle = 8;
constexpr uint plasmaScreen = 4;

/// Reads the reply to logind's ListInhibitors: what, who, why, mode, user and process of each
/// inhibitor.
bool anotherHoldsIdle(const QDBusMessage& reply) {
    const auto list = reply.arguments().constFirst().value<QDBusArgument>();
    bool isHeld = false;
    list.beginArray();
    while (!list.atEnd()) {
        QString what, who, why, mode;
        uint user = 0, process = 0;
        list.beginStructure();
        list >> what >> who >> why >> mode >> user >> process;
        list.endStructure();
        isHeld |= what.split(u':').contains(QStringLiteral("idle")) &&
                  mode == QStringLiteral("block") && process != static_cast<uint>(getpid());
    }
    list.endArray();
    return isHeld;
}

bool saysYes(const QDBusMessage& reply) {
    return reply.arguments().constFirst().toBool();
}

}  // namespace

/// Sends one request to a service, and repeats it whenever the answer may have changed.
class IdleInhibitors::Source {
  public:
    Source(QDBusConnection bus, QDBusMessage question, bool (*read)(const QDBusMessage&))
        : bus_(std::move(bus)), question_(std::move(question)), read_(read) {
        question_.setAutoStartService(false);
        subscriptions_.push_back(
            DBus::onOwnerChanged(bus_, question_.service(), [this](bool present) {
                isHeld_ = isThere_ = false;
                if (present) ask();
            }));
        ask();
    }

    void askOn(const DBus::Object& object, const QString& signal) {
        subscriptions_.push_back(
            DBus::onSignal(bus_, object, signal, [this](const QDBusMessage&) { ask(); }));
    }

    bool isHeld() const { return isHeld_; }
    /// Whether the service has answered since it appeared on the bus.
    bool isThere() const { return isThere_; }

  private:
    void ask() {
        DBus::call(bus_, question_, lifetime_.guard([this](const QDBusMessage& reply) {
            isThere_ = !DBus::failed(reply);
            isHeld_ = isThere_ && !reply.arguments().isEmpty() && read_(reply);
        }));
    }

    QDBusConnection bus_;
    QDBusMessage question_;
    bool (*read_)(const QDBusMessage&);
    bool isHeld_ = false;
    bool isThere_ = false;
    std::vector<OrvelCore::Subscription> subscriptions_;
    OrvelCore::Lifetime lifetime_;
};

IdleInhibitors::Source& IdleInhibitors::follow(QDBusConnection bus, QDBusMessage question,
                                               bool (*read)(const QDBusMessage&)) {
    return *sources_.emplace_back(
        std::make_unique<Source>(std::move(bus), std::move(question), read));
}

IdleInhibitors::IdleInhibitors() {
    const auto system = QDBusConnection::systemBus();
    if (system.isConnected()) {
        const auto& manager = SessionState::manager();
        auto& logind =
            follow(system, manager.method(QStringLiteral("ListInhibitors")), anotherHoldsIdle);
        // logind sends this signal whenever an inhibitor is added or removed, since the inhibited
        // operations are a property.
        logind.askOn(
            {manager.service, manager.path, QStringLiteral("org.freedesktop.DBus.Properties")},
            QStringLiteral("PropertiesChanged"));
    }
    const auto session = QDBusConnection::sessionBus();
    if (session.isConnected()) followSession(session);
}

void IdleInhibitors::followSession(const QDBusConnection& session) {
    const DBus::Object gnome{QStringLiteral("org.gnome.SessionManager"),
                             QStringLiteral("/org/gnome/SessionManager"),
                             QStringLiteral("org.gnome.SessionManager")};
    auto& manager =
        follow(session, gnome.method(QStringLiteral("IsInhibited"), {gnomeIdle}), saysYes);
    manager.askOn(gnome, QStringLiteral("InhibitorAdded"));
    manager.askOn(gnome, QStringLiteral("InhibitorRemoved"));
    const DBus::Object plasma{QStringLiteral("org.kde.Solid.PowerManagement.PolicyAgent"),
                              QStringLiteral("/org/kde/Solid/PowerManagement/PolicyAgent"),
                              QStringLiteral("org.kde.Solid.PowerManagement.PolicyAgent")};
    plasma_ =
        &follow(session, plasma.method(QStringLiteral("HasInhibition"), {plasmaScreen}), saysYes);
    plasma_->askOn(plasma, QStringLiteral("InhibitionsChanged"));
    // The service of Xfce, LXQt and MATE.
    const DBus::Object power{QStringLiteral("org.freedesktop.PowerManagement"),
                             QStringLiteral("/org/freedesktop/PowerManagement/Inhibit"),
                             QStringLiteral("org.freedesktop.PowerManagement.Inhibit")};
    powerManagement_ = &follow(session, power.method(QStringLiteral("HasInhibit")), saysYes);
    powerManagement_->askOn(power, QStringLiteral("HasInhibitChanged"));
    service_ = std::make_unique<ScreenSaverService>(session);
}

IdleInhibitors::~IdleInhibitors() = default;

bool IdleInhibitors::areHeld() const {
    // Plasma provides this service too, but there it also counts inhibitors that only prevent
    // sleep, such as a download. Plasma's policy agent reports those of the screen.
    const bool isAboutSleep = plasma_ != nullptr && plasma_->isThere();
    return suspensions_.areHeld() || (service_ && service_->isInhibited()) ||
           std::ranges::any_of(sources_, [&](const auto& source) {
               return source->isHeld() && !(isAboutSleep && source.get() == powerManagement_);
           });
}

}  // namespace OrvelSystem
