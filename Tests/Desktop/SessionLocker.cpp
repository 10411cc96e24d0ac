#include "SessionLocker.h"

namespace DesktopTest {

SessionLocker::SessionLocker(Desktop& desktop, const std::string& commands)
    : desktop_(desktop), colour_(commands == xsecurelock ? 0x000000 : 0x203040) {
    run("true");
    desktop_.start({"xss-lock", "--", "sh", desktop_.folder() / "locker"}, "xss-lock",
                   desktop_.environmentWithPam());
    // xss-lock does not report when it listens, so signal until it reacts.
    const bool listens = eventually([&] {
        desktop_.logind().signalLock();
        return eventually([&] { return ends() > 0; }, std::chrono::seconds(1));
    });
    if (!listens || !eventually([&] { return ends() == starts() && !isLocked(); }))
        throw std::runtime_error("the session's locker does not work");
    run(commands);
}

void SessionLocker::run(const std::string& commands) {
    const auto file = desktop_.folder() / "locker";
    for (const char* name : {"starts", "ends"}) writeText(desktop_.folder() / name, "");
    writeText(file.string() + ".new", "cd '" + desktop_.folder().string() + "'\necho >>starts\n(" +
                                          commands + ")\necho >>ends\n");
    std::filesystem::rename(file.string() + ".new", file);
}

int SessionLocker::count(const std::string& what) const {
    return static_cast<int>(textOf(desktop_.folder() / what).size());
}

bool SessionLocker::isOn() {
    return std::ranges::all_of(desktop_.screen().displays(), [&](const Monitor& display) {
        // The sides only, because the locker shows its prompt in the middle.
        const Area side{display.area.x, display.area.y, display.area.width / 4,
                        display.area.height};
        return desktop_.screen().picture(side).shareOf(colour_) == 1;
    });
}

bool SessionLocker::unlock() {
    // Input before the locker's grab is lost, and it ignores keys for a moment after a wrong
    // password.
    return eventually([&] {
        desktop_.screen().press({XK_Escape});
        // xsecurelock starts a program for each password, and Escape ends the running one.
        stays([] { return true; }, std::chrono::milliseconds(700));
        desktop_.screen().type(Desktop::password);
        desktop_.screen().press({XK_Return});
        return eventually([&] { return !isLocked(); }, std::chrono::seconds(4));
    });
}

}  // namespace DesktopTest
