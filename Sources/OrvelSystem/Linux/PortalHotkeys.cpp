#include "OrvelSystem/Linux/PortalHotkeys.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QStringList>
#include <algorithm>
#include <utility>

#include "OrvelCore/Brand.h"
#include "OrvelSystem/Wayland/KeyNames.h"
#include "OrvelSystem/X11/KeyCodes.h"

namespace OrvelSystem {

/// A shortcut as the portal's methods and signals have it, with the signature (sa{sv}).
struct PortalShortcut {
    QString id;
    QVariantMap options;
};

static QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.id << shortcut.options;
    argument.endStructure();
    return argument;
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.options;
    argument.endStructure();
    return argument;
}

namespace {

using OrvelCore::Shortcut;
using PortalShortcuts = QList<PortalShortcut>;

constexpr int patience = 1000;  // milliseconds for each of two calls at the start

const DBus::Object portal{QStringLiteral("org.freedesktop.portal.Desktop"),
                          QStringLiteral("/org/freedesktop/portal/desktop"),
                          QStringLiteral("org.freedesktop.portal.GlobalShortcuts")};

DBus::Object at(const QString& path, const QString& interface) {
    return {portal.service, path, interface};
}

/// In the format that the portal expects, such as "CTRL+ALT+l". Empty if the key has no name.
QString proposal(const Shortcut& shortcut) {
    const auto xKeycode = KeyCodes({}).xKeycode(shortcut.keyCode);
    const auto key = xKeycode ? xkbKeyName(shortcut, *xKeycode) : std::string();
    if (key.empty()) return {};
    QStringList keys;
    if (shortcut.modifiers.contains(Shortcut::Modifiers::command)) keys << QStringLiteral("LOGO");
    if (shortcut.modifiers.contains(Shortcut::Modifiers::control)) keys << QStringLiteral("CTRL");
    if (shortcut.modifiers.contains(Shortcut::Modifiers::option)) keys << QStringLiteral("ALT");
    if (shortcut.modifiers.contains(Shortcut::Modifiers::shift)) keys << QStringLiteral("SHIFT");
    return (keys << QString::fromStdString(key)).join(u'+');
}

}  // namespace

std::unique_ptr<PortalHotkeys> PortalHotkeys::open() {
    // The portal learns the program's name on a connection that has not used it before.
    const auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                                   QStringLiteral("global-shortcuts"));
    // Fails where the portal is too old, or knows the name of the program from its unit.
    const auto name = QString::fromUtf8(OrvelCore::Brand::bundleIdentifier);
    bus.call(at(portal.path, QStringLiteral("org.freedesktop.host.portal.Registry"))
                 .method(QStringLiteral("Register"), {name, QVariantMap()}),
             QDBus::Block, patience);
    const auto version = bus.call(portal.get(QStringLiteral("version")), QDBus::Block, patience);
    if (!DBus::property(version).isValid()) {
        QDBusConnection::disconnectFromBus(bus.name());
        return nullptr;
    }
    return std::unique_ptr<PortalHotkeys>(new PortalHotkeys(bus));
}

PortalHotkeys::PortalHotkeys(QDBusConnection bus) : bus_(std::move(bus)) {
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<PortalShortcuts>();
    activations_ = DBus::onSignal(bus_, portal, QStringLiteral("Activated"),
                                  [this](const QDBusMessage& message) { activated(message); });
    changes_ = DBus::onSignal(
        bus_, portal, QStringLiteral("ShortcutsChanged"), [this](const QDBusMessage& message) {
            const auto arguments = message.arguments();
            if (arguments.size() != 2 || arguments[0].value<QDBusObjectPath>().path() != session_)
                return;
            tellKeys(arguments[1]);
        });
    // A portal that has ended has forgotten the session.
    owner_ = DBus::onOwnerChanged(bus_, portal.service, [this](bool present) {
        closeSession();
        asked_.clear();
        if (present) update();
    });
    update_.setSingleShot(true);
    QObject::connect(&update_, &QTimer::timeout, [this] { update(); });
}

PortalHotkeys::~PortalHotkeys() {
    closeSession();
    QDBusConnection::disconnectFromBus(bus_.name());
}

void PortalHotkeys::installEventHandler(std::function<void(std::uint32_t)> pressed) {
    pressed_ = std::move(pressed);
}

void PortalHotkeys::observeKeys(std::function<void(std::uint32_t, const std::string&)> given) {
    given_ = std::move(given);
}

std::optional<HotkeyRef> PortalHotkeys::registerShortcut(const Shortcut& shortcut,
                                                         std::uint32_t number,
                                                         std::string_view title) {
    // A shortcut that is recorded anew has another name, so that the user is asked again.
    const auto id = QString::fromStdString(shortcut.stored());
    if (std::ranges::any_of(hotkeys_, [&](const auto& entry) { return entry.second.id == id; }))
        return {};
    hotkeys_.emplace(number, Hotkey{id, QString::fromUtf8(title), proposal(shortcut)});
    update_.start(0);
    return number;
}

void PortalHotkeys::unregisterHotKey(HotkeyRef ref) {
    if (hotkeys_.erase(static_cast<std::uint32_t>(ref)) > 0) update_.start(0);
}

void PortalHotkeys::update() {
    if (asked_ == hotkeys_) return;
    // A session is bound once, so other hotkeys need another session.
    closeSession();
    asked_ = hotkeys_;
    if (!hotkeys_.empty()) createSession();
}

void PortalHotkeys::createSession() {
    const auto name = QStringLiteral("karvo%1").arg(requests_);
    request(QStringLiteral("CreateSession"), {}, {{QStringLiteral("session_handle_token"), name}},
            [this](const std::optional<QVariantMap>& results) {
                if (!results) return tellKeys({});
                // The documentation promises a string, and some desktops send a path.
                const auto handle = results->value(QStringLiteral("session_handle"));
                session_ = handle.canConvert<QDBusObjectPath>()
                               ? handle.value<QDBusObjectPath>().path()
                               : handle.toString();
                bind();
            });
}

void PortalHotkeys::bind() {
    PortalShortcuts shortcuts;
    for (const auto& [number, hotkey] : asked_) {
        QVariantMap options{{QStringLiteral("description"), hotkey.title}};
        if (!hotkey.proposedKeys.isEmpty())
            options.insert(QStringLiteral("preferred_trigger"), hotkey.proposedKeys);
        shortcuts.append({hotkey.id, options});
    }
    request(
        QStringLiteral("BindShortcuts"),
        {QVariant::fromValue(QDBusObjectPath(session_)), QVariant::fromValue(shortcuts), QString()},
        {}, [this](const std::optional<QVariantMap>& results) {
            tellKeys(results ? results->value(QStringLiteral("shortcuts")) : QVariant());
        });
}

void PortalHotkeys::closeSession() {
    response_.reset();
    if (const auto session = std::exchange(session_, {}); !session.isEmpty())
        bus_.send(at(session, QStringLiteral("org.freedesktop.portal.Session"))
                      .method(QStringLiteral("Close")));
}

void PortalHotkeys::request(const QString& method, const QVariantList& arguments,
                            QVariantMap options,
                            std::function<void(const std::optional<QVariantMap>&)> done) {
    const auto token = QStringLiteral("karvo%1").arg(++requests_);
    options.insert(QStringLiteral("handle_token"), token);
    const auto sender = bus_.baseService().mid(1).replace(u'.', u'_');
    const auto path = QStringLiteral("%1/request/%2/%3").arg(portal.path, sender, token);
    response_ = DBus::onSignal(bus_, at(path, QStringLiteral("org.freedesktop.portal.Request")),
                               QStringLiteral("Response"), [done](const QDBusMessage& message) {
                                   const auto results = message.arguments();
                                   if (results.size() != 2 || results[0].toUInt() != 0)
                                       return done({});
                                   done(qdbus_cast<QVariantMap>(results[1]));
                               });
    DBus::call(bus_, portal.method(method, arguments + QVariantList{options}),
               [current = std::weak_ptr(response_), done](const QDBusMessage& reply) {
                   if (!current.expired() && DBus::failed(reply)) done({});
               });
}

void PortalHotkeys::tellKeys(const QVariant& list) {
    std::map<QString, QString> keys;
    for (const auto& shortcut : qdbus_cast<PortalShortcuts>(list))
        keys[shortcut.id] =
            shortcut.options.value(QStringLiteral("trigger_description")).toString();
    for (const auto& [number, hotkey] : asked_) given_(number, keys[hotkey.id].toStdString());
}

void PortalHotkeys::activated(const QDBusMessage& message) {
    const auto arguments = message.arguments();
    if (arguments.size() != 4 || session_.isEmpty() ||
        arguments[0].value<QDBusObjectPath>().path() != session_)
        return;
    const auto id = arguments[1].toString();
    const auto hotkey =
        std::ranges::find_if(asked_, [&](const auto& entry) { return entry.second.id == id; });
    if (hotkey != asked_.end()) pressed_(hotkey->first);
}

}  // namespace OrvelSystem
