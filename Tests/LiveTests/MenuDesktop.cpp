#include "MenuDesktop.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QDBusVariant>
#include <QWidget>

#include "OrvelCore/MenuRules.h"
#include "OrvelModes/Linux/StatusNotifierTypes.h"
#include "OrvelSystem/Linux/DBus.h"
#include "OrvelUI/Qt/MenuPanelView.h"

#include "Desktop/Eventually.h"
#include "Support/MenuChoices.h"

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");

}  // namespace

class DesktopPanel::Watcher final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

  public:
    bool host = true;
    QStringList items;

    bool hasHost() const { return host; }

  public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) { items << service; }

  Q_SIGNALS:
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();
};

DesktopPanel::DesktopPanel(bool hasHost)
    : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                         QStringLiteral("desktop panel"))),
      watcher_(std::make_unique<Watcher>()) {
    StatusNotifier::registerTypes();
    watcher_->host = hasHost;
    bus_.registerObject(u'/' + QStringLiteral("StatusNotifierWatcher"), watcher_.get(),
                        QDBusConnection::ExportAllContents);
    bus_.registerService(watcherName);
}

DesktopPanel::~DesktopPanel() {
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(QStringLiteral("desktop panel"));
}

void DesktopPanel::setHost(bool hasHost) {
    watcher_->host = hasHost;
    if (hasHost)
        Q_EMIT watcher_->StatusNotifierHostRegistered();
    else
        Q_EMIT watcher_->StatusNotifierHostUnregistered();
}

const QStringList& DesktopPanel::items() const {
    return watcher_->items;
}

QDBusMessage DesktopPanel::send(const QString& path, const QString& interface,
                                const QString& method, const QVariantList& arguments) {
    const DBus::Object object{items().constLast(), path, interface};
    std::optional<QDBusMessage> answer;
    DBus::call(
        bus_, object.method(method, arguments), [&](const QDBusMessage& reply) { answer = reply; },
        20);
    eventually([&] {
        QCoreApplication::processEvents();
        return answer.has_value();
    });
    return answer.value();
}

QDBusMessage DesktopPanel::call(const char* method, const QVariantList& arguments) {
    return send(QStringLiteral("/StatusNotifierItem"), itemInterface, QString::fromLatin1(method),
                arguments);
}

QDBusMessage DesktopPanel::callMenu(const char* method, const QVariantList& arguments) {
    const auto path = qvariant_cast<QDBusObjectPath>(property("Menu")).path();
    return send(path, QStringLiteral("com.canonical.dbusmenu"), QString::fromLatin1(method),
                arguments);
}

QVariant DesktopPanel::property(const char* name) {
    return DBus::property(send(QStringLiteral("/StatusNotifierItem"),
                               QStringLiteral("org.freedesktop.DBus.Properties"),
                               QStringLiteral("Get"), {itemInterface, QString::fromLatin1(name)}));
}

MenuDesktopTest::MenuDesktopTest() {
    logChoices(model, chosen);
    model.onToggleFocusBlur = [this] {
        chosen.emplace_back("focusBlur");
        model.focusBlurOn.set(!model.focusBlurOn.get());
    };
    item.onClick = [this](const StatusItem::Click& click) {
        const bool keyboard = MenuPanelKeyboard::takesKeyboard(false, false, click.byMouse);
        presenter.toggle(click.anchor, click.screen, keyboard);
    };
    const std::uint32_t workArea[] = {0, 30, 800, 570};
    xcb_change_property(screen().connection(), XCB_PROP_MODE_REPLACE, screen().root(),
                        screen().atom("_NET_WORKAREA"), XCB_ATOM_CARDINAL, 32, 4, workArea);
    screen().movePointer(10, 590);
    screen().sync();
}

MenuDesktopTest::~MenuDesktopTest() {
    presenter.close(false);
    QCoreApplication::processEvents();
}

Area MenuDesktopTest::card() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
        for (auto* child : top->findChildren<QWidget*>()) {
            if (!top->isVisible() || dynamic_cast<MenuPanelView*>(child) == nullptr) continue;
            const QPoint at = child->mapToGlobal(QPoint());
            return {at.x(), at.y(), child->width(), child->height()};
        }
    }
    return {};
}

void MenuDesktopTest::clickItem(DesktopPanel& panel) {
    screen().click(itemX, itemY);
    screen().sync();
    // All clients receive the press before the desktop's panel acts on it.
    stays([] { return true; });
    panel.call("Activate", {itemX, itemY});
}

void MenuDesktopTest::clickControl(const std::string& name) {
    for (QWidget* widget : QApplication::allWidgets()) {
        if (!widget->isVisible() || widget->focusPolicy() == Qt::NoFocus ||
            widget->accessibleName().toStdString() != name)
            continue;
        const QPoint at = widget->mapToGlobal(widget->rect().center());
        return screen().click(at.x(), at.y());
    }
    FAIL() << "no " << name;
}

#include "MenuDesktop.moc"
