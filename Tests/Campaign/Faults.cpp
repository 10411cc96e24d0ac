// The faults that can happen during a lock.

#include <xcb/res.h>

#include "Life.h"

namespace Campaign {

namespace {

// Milliseconds after one process is killed in which killing the other counts as killing both.
constexpr double guardComesBack = 2000, appComesBack = 3000;

/// Returns the process that created a window, or -1 if the server does not know it.
pid_t ownerOf(xcb_connection_t* c, xcb_window_t window) {
    const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto reply =
        replyOf(c, xcb_res_query_client_ids, xcb_res_query_client_ids_reply, 1, &wanted);
    if (!reply) return -1;
    const auto ids = xcb_res_query_client_ids_ids_iterator(reply.get());
    if (ids.rem == 0 || xcb_res_client_id_value_value_length(ids.data) == 0) return -1;
    return static_cast<pid_t>(*xcb_res_client_id_value_value(ids.data));
}

}  // namespace

void Life::kill(bool app, bool guard) {
    auto victims = app ? karvo_->apps() : std::vector<pid_t>();
    const bool appRuns = !victims.empty();
    if (guard) std::ranges::copy(karvo_->guards(), std::back_inserter(victims));
    const double now = judge_->now();
    if (appRuns) {
        // A guard that was restarted a moment ago has no stand-in yet.
        const bool both = guard || guardIsFrozen_ || karvo_->guards().empty() ||
                          now - guardKilledAt_ < guardComesBack;
        killed_ = both || killed_ == Killed::both ? Killed::both : Killed::app;
        killedAt_ = now;
        judge_->appIsKilled(both);
    } else if (guard && killed_ == Killed::app) {
        killed_ = Killed::both;
    }
    if (guard) {
        guardKilledAt_ = now;
        judge_->guardIsKilled();
    }
    // The restarted app has not covered the screen by then.
    if (guard && killed_ == Killed::app && now - killedAt_ < appComesBack) killed_ = Killed::both;
    for (const pid_t pid : victims) ::kill(pid, SIGKILL);
    // A program that has grabbed the keyboard gets it back with the app's end.
    if (app && !windows_.empty()) rivalTookKeysAt_ = judge_->now();
}

void Life::killSoon(bool app, bool guard) {
    const std::chrono::milliseconds wait(draw(0, 900));
    assassins_.emplace_back([=, this] {
        std::this_thread::sleep_for(wait);
        kill(app, guard);
    });
}

void Life::jumpClock(int seconds) {
    const auto file = desktop_.folder() / "clock";
    writeText(file.string() + ".new", fmt::format("{:+}\n", seconds));
    std::filesystem::rename(file.string() + ".new", file);
}

bool Life::freeze(const std::vector<pid_t>& pids) {
    for (const pid_t pid : pids) ::kill(pid, SIGSTOP);
    const auto thaw = [pids] {
        for (const pid_t pid : pids) ::kill(pid, SIGCONT);
    };
    if (chance(50)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(draw(10, 1500)));
        thaw();
        return false;
    }
    repairs_.emplace_back(thaw);
    return true;
}

void Life::changeDisplays() {
    auto& screen = desktop_.screen();
    switch (draw(0, 3)) {
        case 0:
            return screen.resize(wide, high);
        case 1:
            return screen.resize(narrow, high);
        case 2:
            screen.resize(wide, high);
            return screen.setDisplays(
                {{"Left", {0, 0, 960, high}}, {"Right", {960, 0, 960, high}}});
        default:
            return screen.setDisplays({{"Only", screen.bounds()}});
    }
}

void Life::windowOnTop(SampleWindow::Kind kind) {
    const Area area{draw(0, 900), draw(0, 500), draw(50, 800), draw(50, 500)};
    windows_.push_back(
        std::make_unique<SampleWindow>(desktop_.display(), area, secretColour, kind));
    windows_.back()->raise();
}

void Life::churn() {
    std::vector<std::unique_ptr<SampleWindow>> crowd;
    for (int i = 0; i < 50; ++i) {
        const auto kind = chance(50) ? SampleWindow::Kind::popup : SampleWindow::Kind::normal;
        crowd.push_back(std::make_unique<SampleWindow>(
            desktop_.display(), Area{draw(0, 900), draw(0, 500), 200, 150}, secretColour, kind));
        if (chance(30)) crowd[static_cast<std::size_t>(draw(0, i))]->unmap();
        if (chance(30)) crowd[static_cast<std::size_t>(draw(0, i))]->raise();
        if (chance(10)) secret_->raise();
    }
}

/// Makes something hold the keyboard or the pointer before the lock. Returns true if a key is held
/// down that would turn the shortcut into a different one.
bool Life::openSomething() {
    auto& screen = desktop_.screen();
    int what = draw(1, 100);
    // A held Alt makes the shortcut a different one, so it needs the URL.
    if (what > 10 && what <= 20 && !sessionBusIsThere_) what = 100;
    // Faked input is taken from a program with grabs later than that of devices.
    if (what <= 30 && !usesDevices_) what = 100;
    if (what <= 10) {
        say("menu");
        screen.click(1240, 700);
        screen.buttonDown(3);
        screen.buttonUp(3);
    } else if (what <= 20) {
        say("Alt+Tab");
        hold({XK_Alt_L});
        screen.press({XK_Tab});
    } else if (what <= 30) {
        say("grab for ever");
        windowOnTop(SampleWindow::Kind::popup);
        windows_.back()->grab();
    } else if (what <= 40) {
        say("button");
        screen.movePointer(1240, 700);
        screen.buttonDown(1);
        repairs_.emplace_back([&screen] { screen.buttonUp(1); });
    } else if (what <= 50) {
        say("key");
        hold({XK_F7});
    }
    return what > 10 && what <= 20;
}

void Life::hold(const std::vector<xcb_keysym_t>& keys) {
    auto& screen = desktop_.screen();
    for (const auto key : keys) {
        screen.keyDown(key);
        repairs_.emplace_back([&screen, key] { screen.keyUp(key); });
    }
}

/// Does to Karvo's windows what any X client can do.
void Life::meddle() {
    auto& screen = desktop_.screen();
    auto windows = screen.mappedWindows();
    if (const auto standIn = screen.ownerOf("_KARVO_STAND_IN")) windows.push_back(standIn);
    auto pids = karvo_->apps();
    std::ranges::copy(karvo_->guards(), std::back_inserter(pids));
    std::erase_if(windows, [&](auto window) {
        return std::ranges::count(pids, ownerOf(screen.connection(), window)) == 0;
    });
    if (windows.empty()) return;
    const auto window =
        windows[static_cast<std::size_t>(draw(0, static_cast<int>(windows.size()) - 1))];
    auto* const c = screen.connection();
    const auto configure = [&](std::uint16_t what, std::uint32_t value) {
        xcb_configure_window(c, window, what, &value);
    };
    rivalActs_.push_back(judge_->now());
    switch (draw(0, 4)) {
        case 0:
            xcb_unmap_window(c, window);
            break;
        case 1:
            configure(XCB_CONFIG_WINDOW_X, 5000);
            break;
        case 2:
            configure(XCB_CONFIG_WINDOW_STACK_MODE, XCB_STACK_MODE_BELOW);
            break;
        case 3:
            configure(XCB_CONFIG_WINDOW_HEIGHT, 1);
            break;
        default:
            xcb_destroy_window(c, window);
            break;
    }
    screen.sync();
}

void Life::fillDisk(bool full) {
    const auto filler = desktop_.dataFolder() / "Karvo/filler";
    if (full)
        writeText(filler, std::string(1 << 17, 'x'));
    else
        std::filesystem::remove(filler);
}

const std::vector<Life::Fault>& Life::faults() {
    static const std::vector<Fault> all{
        {"kill-app", 10, [](Life& life) { life.kill(true, false); }},
        {"kill-guard", 4, [](Life& life) { life.kill(false, true); }},
        {"kill-both", 1, [](Life& life) { life.kill(true, true); }},
        // Delayed, so that the kill coincides with another fault.
        {"kill-app-soon", 5, [](Life& life) { life.killSoon(true, false); }},
        {"kill-guard-soon", 2, [](Life& life) { life.killSoon(false, true); }},
        {"freeze-app", 5,
         [](Life& life) { life.appIsFrozen_ |= life.freeze(life.karvo_->apps()); }},
        {"freeze-guard", 2,
         [](Life& life) {
             life.guardIsFrozen_ = true;
             if (life.killed_ == Killed::app) life.killed_ = Killed::both;
             life.freeze(life.karvo_->guards());
         }},
        {"change-displays", 6, [](Life& life) { life.changeDisplays(); }},
        {"popup-on-top", 5, [](Life& life) { life.windowOnTop(SampleWindow::Kind::popup); }},
        {"window-on-top", 4, [](Life& life) { life.windowOnTop(SampleWindow::Kind::normal); }},
        {"secret-raised", 4,
         [](Life& life) {
             life.secret_->raise();
             if (life.chance(50)) life.desktop_.screen().activate(life.secret_->id());
         }},
        {"secret-takes-focus", 4, [](Life& life) { life.secret_->takeFocus(); }},
        {"grab", 3,
         [](Life& life) {
             if (!life.usesDevices_) return;
             life.windowOnTop(SampleWindow::Kind::popup);
             auto* const menu = life.windows_.back().get();
             menu->grab();
             life.rivalTookKeysAt_ = life.judge_->now();
             life.repairs_.emplace_back([menu] { menu->ungrab(); });
         }},
        {"churn", 3, [](Life& life) { life.churn(); }},
        {"pam-slow", 2,
         [](Life& life) {
             life.desktop_.setPam(std::string("password ") + Desktop::password + "\ndelay 3\n");
         }},
        {"pam-dead", 2,
         [](Life& life) {
             // PAM_AUTHINFO_UNAVAIL
             life.desktop_.setPam("authenticate 9\n");
         }},
        {"wrong-password", 2,
         [](Life& life) {
             life.desktop_.screen().type("wrong guess");
             life.desktop_.screen().press({XK_Return});
         }},
        {"disk-full", 3,
         [](Life& life) {
             if (life.disk_.mounted.empty()) return;
             life.fillDisk(true);
             life.repairs_.emplace_back([&life] { life.fillDisk(false); });
         }},
        {"logind-gone", 1,
         [](Life& life) {
             life.logindIsThere_ = false;
             life.desktop_.logind().stop();
         }},
        {"session-bus-gone", 1,
         [](Life& life) {
             life.sessionBusIsThere_ = false;
             life.desktop_.sessionBus().stop();
         }},
        {"system-bus-gone", 1,
         [](Life& life) {
             life.logindIsThere_ = false;
             life.desktop_.systemBus().stop();
         }},
        {"window-manager-gone", 1,
         [](Life& life) {
             life.windowManagerDiedAt_ = life.judge_->now();
             for (const pid_t pid : descendantsRunning("/usr/bin/openbox")) ::kill(pid, SIGKILL);
         }},
        {"session-lock-asked", 2,
         [](Life& life) {
             if (life.logindIsThere_) life.desktop_.logind().signalLock();
         }},
        {"locker-killed", 3,
         [](Life&) {
             for (const char* locker : {"/usr/bin/i3lock", "/usr/bin/xsecurelock"})
                 for (const pid_t pid : descendantsRunning(locker)) ::kill(pid, SIGKILL);
         }},
        {"hint-forged", 3,
         [](Life& life) {
             if (!life.logindIsThere_) return;
             life.desktop_.logind().setLockedHint(true);
             if (life.chance(50)) life.desktop_.logind().signalUnlock();
             std::this_thread::sleep_for(std::chrono::milliseconds(life.draw(0, 3000)));
             life.desktop_.logind().setLockedHint(false);
         }},
        {"key-held", 4, [](Life& life) { life.hold({XK_F7}); }},
        {"shortcut-held", 4,
         [](Life& life) {
             const xcb_keysym_t key = life.chance(50) ? XK_r : XK_l;
             life.hold({XK_Super_L, key});
         }},
        {"window-meddled-with", 8, [](Life& life) { life.meddle(); }},
        {"device-moved", 4,
         [](Life& life) {
             // A stopped app cannot take the device again.
             if (!life.usesDevices_ || life.keyboardIsMoved_ || life.appIsFrozen_) return;
             life.keyboardIsMoved_ = true;
             life.desktop_.moveKeyboard(1, life.secret_->id());
             life.rivalTookKeysAt_ = life.judge_->now();
             life.repairs_.emplace_back([&life] {
                 life.desktop_.moveKeyboardBack(1);
                 life.keyboardIsMoved_ = false;
             });
         }},
        {"device-comes-back", 3,
         [](Life& life) {
             if (!life.usesDevices_ || life.appIsFrozen_) return;
             life.desktop_.plugKeyboard(1, false);
             std::this_thread::sleep_for(std::chrono::milliseconds(life.draw(0, 500)));
             life.desktop_.plugKeyboard(1, true);
             life.rivalTookKeysAt_ = life.judge_->now();
         }},
        {"clock-jump", 3,
         [](Life& life) {
             if (life.fakesClock_) life.jumpClock(life.draw(-90'000, 90'000));
         }},
        {"suspend-and-wake", 3,
         [](Life& life) {
             if (!life.logindIsThere_) return;
             life.desktop_.logind().prepareForSleep(true);
             std::this_thread::sleep_for(std::chrono::milliseconds(life.draw(0, 200)));
             life.desktop_.logind().prepareForSleep(false);
         }},
        {"session-switched", 2,
         [](Life& life) {
             if (!life.logindIsThere_) return;
             life.desktop_.logind().setActive(false);
             std::this_thread::sleep_for(std::chrono::milliseconds(life.draw(0, 200)));
             life.desktop_.logind().setActive(true);
         }},
    };
    return all;
}

}  // namespace Campaign
