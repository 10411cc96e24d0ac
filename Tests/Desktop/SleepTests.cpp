// The machine sleeps, or the session asks for a lock.

#include "LockDesk.h"
#include "SessionLocker.h"

namespace {

bool isDelayed(Logind& logind) {
    const auto inhibitors = logind.inhibitors();
    return std::ranges::find(inhibitors, "sleep") != inhibitors.end();
}

TEST(Sleep, WaitsUntilEveryPixelIsCovered) {
    LockDesk desk(Desktop::twoDisplays());
    auto& logind = desk.desktop.logind();
    desk.start();
    ASSERT_TRUE(eventually([&] { return isDelayed(logind); }));
    desk.remember();
    // Nothing can be drawn while another client has grabbed the server.
    xcb_grab_server(desk.screen().connection());
    desk.screen().sync();
    logind.prepareForSleep(true);
    EXPECT_TRUE(stays([&] { return isDelayed(logind); }, std::chrono::seconds(1)));
    xcb_ungrab_server(desk.screen().connection());
    desk.screen().sync();
    EXPECT_TRUE(eventually([&] { return !isDelayed(logind); }));
    EXPECT_TRUE(desk.isCovered());
    logind.prepareForSleep(false);
    EXPECT_TRUE(eventually([&] { return isDelayed(logind); }));
    EXPECT_TRUE(desk.cardSays(leftDisplay, "enter your password"));
    ASSERT_TRUE(desk.unlock());

    logind.signalLock();
    EXPECT_TRUE(eventually([&] { return desk.isCovered(); }));
    EXPECT_TRUE(desk.unlock());
}

TEST(Sleep, IsLeftToTheLockerOfTheSession) {
    LockDesk desk;
    auto& logind = desk.desktop.logind();
    SessionLocker locker(desk.desktop, SessionLocker::i3lock);
    desk.start();
    logind.signalLock();
    ASSERT_TRUE(eventually([&] { return locker.isOn(); }));
    EXPECT_TRUE(stays([&] { return !std::filesystem::exists(desk.karvo().markerFile()); },
                      std::chrono::seconds(1)));
    EXPECT_TRUE(locker.unlock());
}

}  // namespace
