#include "Bus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>

#include "Eventually.h"

Bus& Bus::shared() {
    static Bus bus;
    return bus;
}

Bus::Bus() : environment_{{"PATH", "/usr/bin:/bin"}, {"HOME", folder_.path().string()}} {
    bus_ = std::make_unique<PrivateBus>(folder_.path(), "bus", environment_);
    // The id of the mock session; the guard uses it too.
    environment_["XDG_SESSION_ID"] = "1";
    environment_["DBUS_SYSTEM_BUS_ADDRESS"] = bus_->address();
    environment_["DBUS_SESSION_BUS_ADDRESS"] = bus_->address();
    for (const auto& [name, value] : environment_) {
        if (name != "PATH") setenv(name.c_str(), value.c_str(), 1);
    }
    static int count = 1;
    static char name[] = "ServiceTests";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(count, arguments);
}

void Bus::answer(const QString& service, const QString& path, const QString& interface,
                 const QString& method, const QString& in, const QString& out,
                 const QString& code) {
    askMock(service, path, QStringLiteral("AddMethod"), {interface, method, in, out, code});
}

void Bus::askMock(const QString& service, const QString& path, const QString& method,
                  const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Mock"), method);
    message.setArguments(arguments);
    const auto reply = QDBusConnection::systemBus().call(message);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        throw std::runtime_error(reply.errorMessage().toStdString());
    }
}

bool pumpedUntil(const std::function<bool()>& holds) {
    return eventually([&] {
        QCoreApplication::processEvents();
        return holds();
    });
}

bool pumpedWhile(const std::function<bool()>& holds) {
    return stays(
        [&] {
            QCoreApplication::processEvents();
            return holds();
        },
        std::chrono::milliseconds(400));
}
