#include "OrvelSystem/Linux/DBus.h"

#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>

namespace OrvelSystem::DBus {

namespace {

class Relay final : public QObject {
    Q_OBJECT

  public:
    explicit Relay(Handler handler) : handler_(std::move(handler)) {}

  public Q_SLOTS:
    void received(const QDBusMessage& message) {
        // The handler may destroy its own subscription, and this object with it.
        const auto handler = handler_;
        handler(message);
    }

  private:
    Handler handler_;
};

}  // namespace

QDBusMessage Object::method(const QString& name, const QVariantList& arguments) const {
    auto message = QDBusMessage::createMethodCall(service, path, interface, name);
    message.setArguments(arguments);
    return message;
}

QDBusMessage Object::get(const QString& property) const {
    const Object properties{service, path, QStringLiteral("org.freedesktop.DBus.Properties")};
    return properties.method(QStringLiteral("Get"), {interface, property});
}

void call(QDBusConnection bus, const QDBusMessage& message, Handler done, double timeout) {
    const auto pending = bus.asyncCall(message, static_cast<int>(timeout * 1000));
    auto* const watcher = new QDBusPendingCallWatcher(pending);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [done = std::move(done)](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         done(finished->reply());
                     });
}

Task<QDBusMessage> call(QDBusConnection bus, QDBusMessage message) {
    Arrival<QDBusMessage> arrival;
    call(bus, message, arrival.promise());
    QDBusMessage reply = co_await arrival;
    co_return reply;
}

QVariant property(const QDBusMessage& reply) {
    if (failed(reply) || reply.arguments().isEmpty()) return {};
    return reply.arguments().constFirst().value<QDBusVariant>().variant();
}

OrvelCore::Subscription onSignal(QDBusConnection bus, const Object& object, const QString& name,
                                 Handler handler) {
    auto relay = std::make_shared<Relay>(std::move(handler));
    bus.connect(object.service, object.path, object.interface, name, relay.get(),
                SLOT(received(QDBusMessage)));
    return relay;
}

OrvelCore::Subscription onOwnerChanged(QDBusConnection bus, const QString& service,
                                       std::function<void(bool present)> changed) {
    auto watcher = std::make_shared<QDBusServiceWatcher>(service, bus,
                                                         QDBusServiceWatcher::WatchForOwnerChange);
    QObject::connect(
        watcher.get(), &QDBusServiceWatcher::serviceOwnerChanged, watcher.get(),
        [changed = std::move(changed)](const QString&, const QString&, const QString& owner) {
            const auto tell = changed;
            tell(!owner.isEmpty());
        });
    return watcher;
}

}  // namespace OrvelSystem::DBus

#include "DBus.moc"
