#include "OrvelSystem/Linux/SessionKind.h"
#include "OrvelSystem/Linux/Spawn.h"

namespace {

TEST(SessionKind, IsThatOfTheSocketBehindWhichAllWindowsAre) {
    constexpr auto none = XServerAnswer::none, xwayland = XServerAnswer::xwayland,
                   server = XServerAnswer::server;
    constexpr auto x11 = SessionKind::x11, wayland = SessionKind::wayland;
    struct Case {
        const char* name;
        bool compositor;
        std::string_view type;
        XServerAnswer xServer;
        std::optional<SessionKind> kind;
    };
    const Case cases[] = {
        {"an X11 session", false, "x11", server, x11},
        {"the same, started by hand", false, "", server, x11},
        {"a stale WAYLAND_DISPLAY", false, "wayland", server, x11},
        {"a Wayland session", true, "wayland", none, wayland},
        {"the same, started by hand", true, "tty", none, wayland},
        {"with Xwayland", true, "", xwayland, wayland},
        {"Xwayland alone", false, "wayland", xwayland, std::nullopt},
        {"a compositor in a window of X11", true, "x11", server, x11},
        {"an X server in a window of Wayland", true, "wayland", server, wayland},
        {"neither", false, "wayland", none, std::nullopt},
    };
    for (const auto& [name, compositor, type, xServer, kind] : cases)
        EXPECT_EQ(sessionKind({.compositorAnswers = compositor,
                               .sessionType = type,
                               .xServer = [answer = xServer] { return answer; }}),
                  kind)
            << name;
}

TEST(SessionKind, OfAWaylandSessionStartsNoXServer) {
    EXPECT_EQ(sessionKind({.compositorAnswers = true,
                           .sessionType = "wayland",
                           .xServer =
                               [] {
                                   ADD_FAILURE() << "Xwayland would be started";
                                   return XServerAnswer::none;
                               }}),
              SessionKind::wayland);
}

TEST(Spawn, KeepsFromOthersWhatIsForThisProgramAlone) {
    setenv(rolelessVariable, "1", 1);
    setenv("KARVO_TEST_KEPT", "1", 1);
    const std::string test =
        std::string("test -z \"$") + rolelessVariable + "\" && test -n \"$KARVO_TEST_KEPT\"";
    EXPECT_EQ(runToEnd({"sh", "-c", test}), 0);
    unsetenv(rolelessVariable);
    unsetenv("KARVO_TEST_KEPT");
}

}  // namespace
