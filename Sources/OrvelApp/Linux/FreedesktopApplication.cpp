#include "OrvelApp/Linux/FreedesktopApplication.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

#include "OrvelCore/Brand.h"

namespace OrvelApp {

namespace {

constexpr int replyTimeoutMilliseconds = 2000;

QString serviceName() {
    return QString::fromUtf8(OrvelCore::Brand::bundleIdentifier.data(),
                             static_cast<qsizetype>(OrvelCore::Brand::bundleIdentifier.size()));
}

/// The path that desktops derive from the name.
QString objectPath() {
    return u'/' + serviceName().replace(u'.', u'/');
}

}  // namespace

class FreedesktopApplication::Adaptor final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    Handlers handlers;

  public Q_SLOTS:
    void Activate(const QVariantMap& /*platformData*/) {
        if (handlers.reopen) handlers.reopen();
    }
    void Open(const QStringList& urls, const QVariantMap& /*platformData*/) {
        if (handlers.open) handlers.open(urls);
    }
    void ActivateAction(const QString& action, const QVariantList& /*parameter*/,
                        const QVariantMap& /*platformData*/) {
        if (action == QLatin1String("quit") && handlers.quit) handlers.quit();
    }
};

FreedesktopApplication::FreedesktopApplication() : adaptor_(std::make_unique<Adaptor>()) {}
FreedesktopApplication::~FreedesktopApplication() {
    // The connection outlives this object, and the program that may be started next needs the name.
    QDBusConnection::sessionBus().unregisterService(serviceName());
}

FreedesktopApplication::Start FreedesktopApplication::start(const QStringList& urls,
                                                            bool asLoginItem) {
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return Start::first;
    // Register the object first, so that a client which sees the name can call it.
    bus.registerObject(objectPath(), adaptor_.get(), QDBusConnection::ExportAllSlots);
    if (bus.registerService(serviceName())) return Start::first;
    const bool reopens = urls.isEmpty() && !asLoginItem;
    auto call = QDBusMessage::createMethodCall(
        serviceName(), objectPath(), QStringLiteral("org.freedesktop.Application"),
        reopens ? QStringLiteral("Activate") : QStringLiteral("Open"));
    if (!reopens) call << urls;
    call << QVariantMap();
    const auto reply = bus.call(call, QDBus::Block, replyTimeoutMilliseconds);
    if (reply.type() == QDBusMessage::ReplyMessage) return Start::second;
    // The owner of the name may just have died; that is when the guard starts the program again.
    return bus.registerService(serviceName()) ? Start::first : Start::refused;
}

void FreedesktopApplication::setHandlers(Handlers handlers) {
    adaptor_->handlers = std::move(handlers);
}

}  // namespace OrvelApp

#include "FreedesktopApplication.moc"
