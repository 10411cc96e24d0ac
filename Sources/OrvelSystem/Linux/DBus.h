#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>

#include "OrvelSystem/Task.h"

/// Message buses without ever waiting for an answer. Main thread only.
namespace OrvelSystem::DBus {

/// What stays registered for as long as the token lives.
using Subscription = std::shared_ptr<void>;
using Handler = std::function<void(const QDBusMessage& message)>;

/// An object of a service, seen through one of its interfaces.
struct Object {
    QString service;
    QString path;
    QString interface;

    QDBusMessage method(const QString& name, const QVariantList& arguments = {}) const;
    /// A call of the standard interface that reads one property of this one.
    QDBusMessage get(const QString& property) const;
};

/// Calls `done` once in a later turn, with the reply or with an error message. `seconds` bounds
/// the wait.
void call(QDBusConnection bus, const QDBusMessage& message, double seconds, Handler done);
Task<QDBusMessage> call(QDBusConnection bus, QDBusMessage message, double seconds);

inline bool failed(const QDBusMessage& reply) {
    return reply.type() != QDBusMessage::ReplyMessage;
}
/// The value in a reply to `Object::get`; invalid when it failed.
QVariant property(const QDBusMessage& reply);

/// Signals that the owner of the object's service sends; nobody else's count.
[[nodiscard]] Subscription onSignal(QDBusConnection bus, const Object& object, const QString& name,
                                    Handler handler);
/// Tells whenever the name gets an owner (true) or loses it (false).
[[nodiscard]] Subscription onOwnerChanged(QDBusConnection bus, const QString& service,
                                          std::function<void(bool present)> changed);

}  // namespace OrvelSystem::DBus
