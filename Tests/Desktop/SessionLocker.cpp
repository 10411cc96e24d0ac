#include "SessionLocker.h"

#include <algorithm>
#include <stdexcept>

namespace DesktopTest {

namespace {

constexpr Colour colour = 0x203040;

}  // namespace

SessionLocker::SessionLocker(Desktop& desktop) : desktop_(desktop) {
    desktop_.start({"xss-lock", "--", "i3lock", "-n", "-c", "203040"}, "xss-lock",
                   desktop_.environmentWithPam());
    // xss-lock says nothing when it listens, so it is tried out.
    const bool listens = eventually([&] {
        desktop_.logind().signalLock();
        return eventually([&] { return isOn(); }, std::chrono::seconds(1));
    });
    if (!listens || !unlock() || !eventually([&] { return !isOn(); }))
        throw std::runtime_error("the session's locker does not work");
}

bool SessionLocker::isOn() {
    return std::ranges::all_of(desktop_.screen().displays(), [&](const Display& display) {
        // Beside the middle, where it shows what is being typed.
        const Area side{display.area.x, display.area.y, display.area.width / 4,
                        display.area.height};
        return desktop_.screen().picture(side).shareOf(colour) == 1;
    });
}

bool SessionLocker::unlock() {
    // What was typed before it had the keyboard is lost, and it looks away after a wrong password.
    return eventually([&] {
        desktop_.screen().press({XK_Escape});
        desktop_.screen().type(Desktop::password);
        desktop_.screen().press({XK_Return});
        return eventually([&] { return !isLocked(); }, std::chrono::seconds(4));
    });
}

}  // namespace DesktopTest
