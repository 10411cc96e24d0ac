#include "OrvelModes/Linux/StatusNotifierItem.h"

#include <QDBusObjectPath>
#include <QIcon>
#include <QObject>
#include <QtEndian>
#include <utility>

#include <unistd.h>

#include "OrvelCore/Brand.h"
#include "OrvelModes/Linux/StatusNotifierTypes.h"
#include "OrvelSystem/Linux/StatusNotifierWatcher.h"
#include "OrvelSystem/Qt/Appearance.h"
#include "OrvelUI/Palette.h"
#include "OrvelUI/Qt/MenuBarPictures.h"

namespace OrvelModes {

using OrvelCore::MenuBarIconState;
using OrvelSystem::Appearance;
using StatusNotifier::Pixmap;
using StatusNotifier::Pixmaps;
namespace Brand = OrvelCore::Brand;
namespace Palette = OrvelUI::Palette;

namespace {

const QString objectPath = QStringLiteral("/StatusNotifierItem");

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

Pixmap pixmap(const QImage& image) {
    Pixmap result{image.width(), image.height(), {}};
    result.bytes.resize(static_cast<qsizetype>(image.width()) * image.height() * 4);
    auto* to = result.bytes.data();
    for (int y = 0; y < image.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        qToBigEndian<quint32>(row, image.width(), to);
        to += static_cast<std::ptrdiff_t>(image.width()) * 4;
    }
    return result;
}

/// In the colour that contrasts with a panel of the desktop's appearance.
Pixmaps pixmaps(MenuBarIconState state) {
    const Palette::Ink ink{Appearance::shared().isDark() ? Palette::inkDark : Palette::inkLight};
    Pixmaps pictures;
    for (const int side : {16, 22, 24, 32, 48})
        pictures.append(pixmap(OrvelUI::Drawing::menuBarIcon(state, side, ink)));
    return pictures;
}

/// The name of the installed icon, which a panel draws in its own colour.
QString themeName(MenuBarIconState state) {
    const char* const name = state == MenuBarIconState::rest      ? "rest"
                             : state == MenuBarIconState::partial ? "partial"
                                                                  : "full";
    return text(Brand::bundleIdentifier) + u'-' + QString::fromLatin1(name) +
           QStringLiteral("-symbolic");
}

}  // namespace

class StatusNotifierItem::Object final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(OrvelModes::StatusNotifier::Pixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(QString IconAccessibleDesc READ title)
    Q_PROPERTY(QString OverlayIconName READ none)
    Q_PROPERTY(OrvelModes::StatusNotifier::Pixmaps OverlayIconPixmap READ noPixmap)
    Q_PROPERTY(QString AttentionIconName READ none)
    Q_PROPERTY(OrvelModes::StatusNotifier::Pixmaps AttentionIconPixmap READ noPixmap)
    Q_PROPERTY(QString AttentionMovieName READ none)
    Q_PROPERTY(OrvelModes::StatusNotifier::ToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)

  public:
    Object(const QString& menuPath, Handlers handlers)
        : menuPath_(menuPath), handlers_(std::move(handlers)) {}

    static QString category() { return QStringLiteral("ApplicationStatus"); }
    static QString id() { return text(Brand::slug); }
    static QString title() { return text(Brand::name); }
    static QString status() { return QStringLiteral("Active"); }
    static int windowId() { return 0; }
    /// A panel may show nothing for a name that it does not find, so the name is given only if the
    /// icon is installed.
    QString iconName() const {
        const QString name = themeName(state_);
        return QIcon::hasThemeIcon(name) ? name : QString();
    }
    Pixmaps iconPixmap() const { return pixmaps(state_); }
    static QString none() { return {}; }
    static Pixmaps noPixmap() { return {}; }
    static StatusNotifier::ToolTip toolTip() { return {{}, {}, title(), {}}; }
    static bool itemIsMenu() { return false; }
    QDBusObjectPath menu() const { return QDBusObjectPath(menuPath_); }

    void setState(MenuBarIconState state) {
        if (std::exchange(state_, state) != state) Q_EMIT NewIcon();
    }

  public Q_SLOTS:
    // These reply at once, because a click may take longer than a panel waits.
    void Activate(int x, int y) { later(handlers_.activate, x, y); }
    void SecondaryActivate(int x, int y) { later(handlers_.activate, x, y); }
    void ContextMenu(int x, int y) { later(handlers_.contextMenu, x, y); }
    void Scroll(int /*delta*/, const QString& /*orientation*/) {}

  Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString& status);

  private:
    void later(const std::function<void(int, int)>& handler, int x, int y) {
        QMetaObject::invokeMethod(
            this, [handler, x, y] { handler(x, y); }, Qt::QueuedConnection);
    }

    QString menuPath_;
    Handlers handlers_;
    MenuBarIconState state_ = MenuBarIconState::rest;
};

StatusNotifierItem::StatusNotifierItem(QDBusConnection bus, const QString& menuPath,
                                       Handlers handlers)
    : object_(std::make_unique<Object>(menuPath, std::move(handlers))),
      bus_(std::move(bus)),
      // The naming convention for items: one bus name for each item.
      service_(QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(getpid())),
      appearance_(Appearance::shared().observe([this] { Q_EMIT object_->NewIcon(); })) {
    StatusNotifier::registerTypes();
    bus_.registerObject(objectPath, object_.get(),
                        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                            QDBusConnection::ExportAllProperties);
}

StatusNotifierItem::~StatusNotifierItem() {
    setVisible(false);
    bus_.unregisterObject(objectPath);
}

void StatusNotifierItem::setState(MenuBarIconState state) {
    object_->setState(state);
}

void StatusNotifierItem::setVisible(bool visible) {
    if (visible == isVisible()) return;
    if (visible) {
        bus_.registerService(service_);
        announcement_ = OrvelSystem::StatusNotifierWatcher::shared().announce(service_);
    } else {
        announcement_.reset();
        bus_.unregisterService(service_);
    }
}

}  // namespace OrvelModes

#include "StatusNotifierItem.moc"
