#include "OrvelSystem/Linux/LogindInhibitor.h"

#include "OrvelCore/Brand.h"
#include "OrvelSystem/Linux/DBus.h"
#include "OrvelSystem/Linux/SessionState.h"

namespace OrvelSystem {

LogindInhibitor::LogindInhibitor(const QString& what, const std::string& reason,
                                 const QString& mode) {
    const auto who = QString::fromStdString(std::string(OrvelCore::Brand::name));
    const auto inhibit = SessionState::manager().method(
        QStringLiteral("Inhibit"), {what, who, QString::fromStdString(reason), mode});
    DBus::call(QDBusConnection::systemBus(), inhibit,
               [weak = std::weak_ptr(lock_)](const QDBusMessage& reply) {
                   const auto kept = weak.lock();
                   if (!kept || DBus::failed(reply)) return;
                   *kept = reply.arguments().value(0).value<QDBusUnixFileDescriptor>();
               });
}

}  // namespace OrvelSystem
