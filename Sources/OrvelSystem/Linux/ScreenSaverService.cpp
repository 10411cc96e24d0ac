#include "OrvelSystem/Linux/ScreenSaverService.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>
#include <algorithm>
#include <map>

#include "OrvelCore/Lifetime.h"
#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

namespace {

// A flag of `RequestName`: another program that requests the name gets it.
constexpr uint allowReplacement = 1;

QString name() {
    return QStringLiteral("org.freedesktop.ScreenSaver");
}

/// Programs use either path.
QStringList paths() {
    return {QStringLiteral("/org/freedesktop/ScreenSaver"), QStringLiteral("/ScreenSaver")};
}

DBus::Object daemon() {
    return {QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus")};
}

}  // namespace

class ScreenSaverService::Object final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.ScreenSaver")

  public:
    explicit Object(const QDBusConnection& bus) : bus_(bus) {
        watcher_.setConnection(bus_);
        watcher_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
        connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this,
                [this](const QString& client) {
                    std::erase_if(holders_,
                                  [&](const auto& holder) { return holder.second == client; });
                    watcher_.removeWatchedService(client);
                });
        // A program ends an inhibition by a request to the current owner of the name, so
        // inhibitions from before a change of owner would never end.
        ownerChanged_ = DBus::onOwnerChanged(bus_, name(), [this](bool) { holders_.clear(); });
        for (const auto& path : paths())
            bus_.registerObject(path, this, QDBusConnection::ExportAllSlots);
        DBus::call(bus_, daemon().method(QStringLiteral("ListActivatableNames")),
                   lifetime_.guard([this](const QDBusMessage& reply) { claim(reply); }));
    }
    ~Object() override {
        for (const auto& path : paths()) bus_.unregisterObject(path);
        bus_.send(daemon().method(QStringLiteral("ReleaseName"), {name()}));
    }

    bool isInhibited() const { return !holders_.empty(); }

  public Q_SLOTS:
    uint Inhibit(const QString& /*application*/, const QString& /*reason*/) {
        const auto cookie = ++lastCookie_;
        const QString client = message().service();
        // An inhibition by this program does not show that the user is active.
        if (client != bus_.baseService()) {
            holders_.emplace(cookie, client);
            watcher_.addWatchedService(client);
        }
        return cookie;
    }
    void UnInhibit(uint cookie) {
        const auto holder = holders_.find(cookie);
        if (holder != holders_.end() && holder->second == message().service())
            holders_.erase(holder);
    }

  private:
    /// If the bus can start the service on demand, the session provides it.
    void claim(const QDBusMessage& activatable) {
        const bool isThere = !DBus::failed(activatable) && !activatable.arguments().isEmpty() &&
                             activatable.arguments().constFirst().toStringList().contains(name());
        if (isThere) return;
        DBus::call(bus_, daemon().method(QStringLiteral("RequestName"), {name(), allowReplacement}),
                   [](const QDBusMessage&) {});
    }

    QDBusConnection bus_;
    QDBusServiceWatcher watcher_;
    OrvelCore::Subscription ownerChanged_;
    uint lastCookie_ = 0;
    std::map<uint, QString> holders_;  // unique names of the clients' connections, by cookie
    OrvelCore::Lifetime lifetime_;
};

ScreenSaverService::ScreenSaverService(const QDBusConnection& bus)
    : object_(std::make_unique<Object>(bus)) {}

ScreenSaverService::~ScreenSaverService() = default;

bool ScreenSaverService::isInhibited() const {
    return object_->isInhibited();
}

}  // namespace OrvelSystem

#include "ScreenSaverService.moc"
