#include <systemd/sd-bus.h>

#include "OrvelSystem/Linux/SessionLocker.h"

#include "Bus.h"

namespace {

using OrvelSystem::SessionLocker;

TEST(SessionLocker, IsKnownByTheNameThatItOwns) {
    auto& bus = Bus::shared().connection();
    // The tester's own locker is on another display.
    setenv("DISPLAY", ":70707", 1);
    // Elsewhere swaylock, which is installed for the tests, would lock this session.
    setenv("WAYLAND_DISPLAY", "wayland-1", 1);
    setenv("XDG_SESSION_TYPE", "wayland", 1);
    EXPECT_TRUE(SessionLocker::command());
    EXPECT_FALSE(SessionLocker::isKnown());
    for (const char* const name : {"org.gnome.ScreenSaver", "org.cinnamon.ScreenSaver"}) {
        ASSERT_GE(sd_bus_request_name(bus.connection(), name, 0), 0);
        // One look may give up before a busy bus answers.
        EXPECT_TRUE(pumpedUntil([] { return SessionLocker::isKnown(); })) << name;
        EXPECT_TRUE(pumpedUntil([] { return !SessionLocker::command(); })) << name;
        ASSERT_GE(sd_bus_release_name(bus.connection(), name), 0);
    }
    EXPECT_FALSE(SessionLocker::isKnown());
}

TEST(SessionLocker, FindsTheLockCommandOfSwayidle) {
    using namespace std::string_view_literals;
    const auto onlyIdle = "swayidle\0-w\0timeout\0300\0swaylock -f\0"sv;
    const auto command = SessionLocker::swayidleCommand;
    EXPECT_EQ(command(onlyIdle, ""), std::nullopt);
    EXPECT_EQ(command(onlyIdle, "# lock 'x'\nbefore-sleep 'swaylock'\nunlock y"), std::nullopt);
    EXPECT_EQ(command(onlyIdle, "timeout 9 x\n lock 'swaylock -f'\n"), "swaylock -f");
    EXPECT_EQ(command("swayidle\0-w\0lock\0gtklock -d\0"sv, "lock x"), "gtklock -d");
}

}  // namespace
