#include "OrvelSystem/DisplayAwake.h"

#include <QGuiApplication>
#include <cstdint>

#include <xcb/screensaver.h>

#include "OrvelCore/Brand.h"
#include "OrvelSystem/Linux/DBus.h"
#include "OrvelSystem/Linux/LogindInhibitor.h"
#include "OrvelSystem/X11/X11.h"

namespace OrvelSystem {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// Suspends the X server's own blanking and power saving. The suspension ends with the connection.
class ServerSuspension {
  public:
    ServerSuspension() {
        const auto* const app = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
        if (!app || !app->nativeInterface<QNativeInterface::QX11Application>()) return;
        X11& x = X11::shared();
        const auto* const extension = xcb_get_extension_data(x.connection(), &xcb_screensaver_id);
        if (!extension || !extension->present) return;
        const XReply<xcb_screensaver_query_version_reply_t> version(
            xcb_screensaver_query_version_reply(
                x.connection(), xcb_screensaver_query_version(x.connection(), 1, 1), nullptr));
        if (!version || version->server_minor_version < 1) return;
        suspend(1);
        taken_ = true;
    }
    ~ServerSuspension() {
        if (taken_) suspend(0);
    }
    ServerSuspension(const ServerSuspension&) = delete;
    ServerSuspension& operator=(const ServerSuspension&) = delete;

    bool isTaken() const { return taken_; }

  private:
    static void suspend(std::uint8_t on) {
        xcb_screensaver_suspend(X11::shared().connection(), on);
        X11::shared().flush();
    }

    bool taken_ = false;
};

// Inhibits the session's screen saver and power manager.
class SaverInhibition {
  public:
    explicit SaverInhibition(const std::string& reason) {
        auto inhibit =
            saver().method(QStringLiteral("Inhibit"), {text(OrvelCore::Brand::name), text(reason)});
        inhibit.setAutoStartService(false);
        DBus::call(bus(), inhibit, [weak = std::weak_ptr(cookie_)](const QDBusMessage& reply) {
            if (DBus::failed(reply)) return;
            const auto cookie = reply.arguments().value(0).toUInt();
            if (const auto kept = weak.lock()) {
                *kept = cookie;
            } else {
                uninhibit(cookie);
            }
        });
    }
    ~SaverInhibition() {
        if (*cookie_) uninhibit(**cookie_);
    }
    SaverInhibition(const SaverInhibition&) = delete;
    SaverInhibition& operator=(const SaverInhibition&) = delete;

    bool isTaken() const { return cookie_->has_value(); }

  private:
    static QDBusConnection bus() { return QDBusConnection::sessionBus(); }
    static DBus::Object saver() {
        return {QStringLiteral("org.freedesktop.ScreenSaver"),
                QStringLiteral("/org/freedesktop/ScreenSaver"),
                QStringLiteral("org.freedesktop.ScreenSaver")};
    }
    static void uninhibit(std::uint32_t cookie) {
        bus().send(saver().method(QStringLiteral("UnInhibit"), {cookie}));
    }

    std::shared_ptr<std::optional<std::uint32_t>> cookie_ =
        std::make_shared<std::optional<std::uint32_t>>();
};

class SessionAssertion final : public AwakeAssertion {
  public:
    explicit SessionAssertion(const std::string& reason)
        : saver_(reason), idle_(QStringLiteral("idle"), reason, QStringLiteral("block")) {}
    bool isTaken() const override {
        return server_.isTaken() || saver_.isTaken() || idle_.isTaken();
    }

  private:
    ServerSuspension server_;
    SaverInhibition saver_;
    LogindInhibitor idle_;  // of actions on an idle session
};

}  // namespace

std::unique_ptr<AwakeAssertion> DisplayAwake::takeFromSystem(const std::string& reason) {
    return std::make_unique<SessionAssertion>(reason);
}

}  // namespace OrvelSystem
