#pragma once

#include <QDBusConnection>
#include <QTimer>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "OrvelSystem/HotkeyPlatform.h"
#include "OrvelSystem/Linux/DBus.h"

namespace OrvelSystem {

/// Global hotkeys by the desktop portal. It is asked for all hotkeys at once, and the user decides
/// in a dialog of the desktop which keys each of them gets; the recorded shortcut is a proposal.
/// Main thread only.
class PortalHotkeys final : public HotkeyPlatform {
  public:
    /// Null if the session has no such portal or it does not answer within two seconds. Needs a
    /// `QCoreApplication`.
    static std::unique_ptr<PortalHotkeys> open();
    ~PortalHotkeys() override;
    PortalHotkeys(const PortalHotkeys&) = delete;
    PortalHotkeys& operator=(const PortalHotkeys&) = delete;

    void installEventHandler(std::function<void(std::uint32_t)> pressed) override;
    void observeKeys(std::function<void(std::uint32_t, const std::string&)> given) override;
    /// Refuses only a combination that a registration of this object has. The portal is asked in a
    /// later turn of the loop.
    std::optional<HotkeyRef> registerShortcut(const OrvelCore::Shortcut& shortcut,
                                              std::uint32_t number,
                                              std::string_view title) override;
    void unregisterHotKey(HotkeyRef ref) override;

  private:
    struct Hotkey {
        /// The portal keeps the user's choice under this name.
        QString id;
        QString title;
        QString proposedKeys;
        bool operator==(const Hotkey&) const = default;
    };

    explicit PortalHotkeys(QDBusConnection bus);
    /// Makes the session of the portal agree with `hotkeys_`.
    void update();
    void createSession();
    void bind();
    void closeSession();
    /// Sends a call that the portal answers with a signal. `done` receives the results of a request
    /// that was granted, else an empty value. A later request replaces it.
    void request(const QString& method, const QVariantList& arguments, QVariantMap options,
                 std::function<void(const std::optional<QVariantMap>&)> done);
    void tellKeys(const QVariant& list);
    void activated(const QDBusMessage& message);

    QDBusConnection bus_;
    std::function<void(std::uint32_t)> pressed_ = [](std::uint32_t) {};
    std::function<void(std::uint32_t, const std::string&)> given_ = [](std::uint32_t,
                                                                       const std::string&) {};
    std::map<std::uint32_t, Hotkey> hotkeys_;  // by number
    /// What the portal was asked for last.
    std::map<std::uint32_t, Hotkey> asked_;
    QString session_;  // empty if there is none
    unsigned requests_ = 0;
    QTimer update_;
    OrvelCore::Subscription response_;
    OrvelCore::Subscription activations_;
    OrvelCore::Subscription changes_;
    OrvelCore::Subscription owner_;
};

}  // namespace OrvelSystem
