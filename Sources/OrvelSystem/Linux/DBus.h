#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>

#include "OrvelCore/WeakList.h"
#include "OrvelSystem/Task.h"

/// Asynchronous calls and signals of message buses. Main thread only.
namespace OrvelSystem::DBus {

/// The registration ends when the token is destroyed.
using Handler = std::function<void(const QDBusMessage& message)>;

/// An object of a service, accessed through one of its interfaces.
struct Object {
    QString service;
    QString path;
    QString interface;

    QDBusMessage method(const QString& name, const QVariantList& arguments = {}) const;
    /// A call that reads one property of this interface.
    QDBusMessage get(const QString& property) const;
};

/// Seconds; enough for a service that must be started first.
inline constexpr double replyTimeout = 5;

/// Calls `done` once in a later turn of the loop, with the reply, or with an error message if there
/// is no reply within `timeout` seconds.
void call(QDBusConnection bus, const QDBusMessage& message, Handler done,
          double timeout = replyTimeout);
Task<QDBusMessage> call(QDBusConnection bus, QDBusMessage message);

inline bool failed(const QDBusMessage& reply) {
    return reply.type() != QDBusMessage::ReplyMessage;
}
/// The value in a reply to `Object::get`; invalid if the call failed.
QVariant property(const QDBusMessage& reply);

/// Reports only signals that the owner of the object's service sends.
[[nodiscard]] OrvelCore::Subscription onSignal(QDBusConnection bus, const Object& object,
                                               const QString& name, Handler handler);
/// Calls `changed` with true when the name gets an owner, and with false when it loses it.
[[nodiscard]] OrvelCore::Subscription onOwnerChanged(QDBusConnection bus, const QString& service,
                                                     std::function<void(bool present)> changed);

}  // namespace OrvelSystem::DBus
