#include <QDBusConnection>
#include <QDBusMessage>

#include "OrvelSystem/HotkeyCenter.h"
#include "OrvelSystem/Linux/PortalHotkeys.h"

#include "Bus.h"

namespace {

using namespace OrvelCore;
using namespace OrvelSystem;

void press(const QString& id) {
    QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall("org.freedesktop.portal.Desktop",
                                       "/org/freedesktop/portal/desktop",
                                       "org.freedesktop.portal.GlobalShortcuts", "Press")
        << id);
}

TEST(PortalHotkeys, AreProposedAndReportTheKeysThatTheUserGives) {
    auto& bus = Bus::shared();
    const DesktopTest::Portal portal(bus.connection(), bus.environment(), bus.log("portal.log"));
    const auto hotkeys = PortalHotkeys::open();
    ASSERT_NE(hotkeys, nullptr);
    HotkeyCenter center(*hotkeys);
    std::map<std::string, std::string> keys;
    std::string pressed;
    const auto ask = [&](const char* title, const Shortcut& shortcut) {
        return center.registerHotkey(
            shortcut, [&pressed, title] { pressed += title; }, title,
            [&keys, title](const std::string& given) { keys[title] = given; });
    };
    using M = Shortcut::Modifiers;
    const auto lock = ask("Lock", {37, "L", M::command});
    EXPECT_TRUE(ask("Blur", {49, "Space", M::control | M::option | M::shift}));
    EXPECT_TRUE(ask("Refuse", {40, "K", M::command}));
    EXPECT_FALSE(ask("Again", {40, "K", M::command})) << "one combination, two actions";
    const std::map<std::string, std::string> given{
        {"Lock", "LOGO+l"}, {"Blur", "CTRL+ALT+SHIFT+space"}, {"Refuse", ""}};
    EXPECT_TRUE(pumpedUntil([&] { return keys == given; }));
    press("37:1:L");
    EXPECT_TRUE(pumpedUntil([&] { return pressed == "Lock"; }));

    // The portal binds a session once, so a change asks again for what remains.
    keys.clear();
    center.unregister(*lock);
    EXPECT_TRUE(pumpedUntil([&] { return keys.size() == 2; }));
    press("37:1:L");
    press("49:14:Space");
    EXPECT_TRUE(pumpedUntil([&] { return pressed == "LockBlur"; }));
}

}  // namespace
