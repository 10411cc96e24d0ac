#include "Life.h"

#include <algorithm>
#include <csignal>
#include <thread>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <sched.h>
#include <sys/mount.h>

namespace Campaign {

using namespace DesktopTest;
using namespace std::chrono_literals;

namespace {

constexpr Colour secretColour = 0x3fd18b;
constexpr int wide = 1920, narrow = 1280, high = 720;
constexpr Area secretArea{60, 60, 1100, 600};
// Seen only while the screen is wide.
constexpr Area outsideArea{1400, 100, 400, 500};
// A library that gives a program another time of day. Without it the clock never jumps.
constexpr const char* faketime = "/usr/lib/x86_64-linux-gnu/faketime/libfaketime.so.1";
// Milliseconds within which the death of the other one is taken as the death of both.
constexpr double guardComesBack = 2000, appComesBack = 3000;
// A key that no password has.
constexpr const char* canary = "q";

Desktop::Options optionsFor(std::minstd_rand& random) {
    random.discard(5);
    Desktop::Options options;
    options.windowManager = random() % 8 != 0;
    options.width = wide;
    options.height = high;
    return options;
}

}  // namespace

struct Life::Fault {
    const char* name;
    int weight;
    void (*happen)(Life&);
};

void Life::SmallDisk::begin(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    // Seen by this process and its children only.
    if (unshare(CLONE_NEWNS) == 0 &&
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
        mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=64k") == 0)
        mounted = folder;
}

Life::SmallDisk::~SmallDisk() {
    if (!mounted.empty()) umount2(mounted.c_str(), MNT_DETACH);
}

Life::Life(unsigned seed) : random_(seed * 7919 + 1), desktop_(optionsFor(random_)) {
    hasLocker_ = chance(40);
    auto& screen = desktop_.screen();
    screen.resize(narrow, high);
    // The session's second way to lock: a note in a file.
    const auto tools = desktop_.folder() / "tools";
    const auto asked = desktop_.folder() / "asked";
    std::filesystem::create_directories(tools);
    writeFile(tools / "xdg-screensaver", "#!/bin/sh\necho \"$@\" >> '" + asked.string() + "'\n");
    std::filesystem::permissions(tools / "xdg-screensaver", std::filesystem::perms::owner_all);
    desktop_.environment()["PATH"] = tools.string() + ":/usr/bin:/bin";
    settings_ = R"({"soundsOn": false})";
    writeFile(desktop_.configFolder() / "Karvo/settings.json", settings_);
    if (chance(50)) disk_.begin(desktop_.dataFolder() / "Karvo");
    // A desktop of its own windows below, so that the wallpaper is never all there is.
    secret_ = &desktop_.addWindow(secretArea, secretColour, SampleWindow::Kind::normal, "Secret");
    outside_ = std::make_unique<SampleWindow>(desktop_.display(), outsideArea, secretColour,
                                              SampleWindow::Kind::popup, "Outside");
    // A window manager that still looks at the changed displays may lose it.
    const auto isThere = [&] {
        secret_->map();
        return eventually([&] { return isOpen(); }, 2s);
    };
    if (!eventually(isThere)) throw std::runtime_error("no secret window");
    if (hasLocker_) locker_ = std::make_unique<SessionLocker>(desktop_);
    Karvo::Options options;
    fakesClock_ = std::filesystem::exists(faketime) && chance(30);
    if (fakesClock_) {
        jumpClock(0);
        options.environment = {{"LD_PRELOAD", std::string("libpam_wrapper.so:") + faketime},
                               {"FAKETIME_TIMESTAMP_FILE", desktop_.folder() / "clock"},
                               {"FAKETIME_NO_CACHE", "1"},
                               // Or programs share a lock, which one that is killed keeps.
                               {"NO_FAKE_STAT", "1"},
                               {"FAKETIME_DONT_FAKE_MONOTONIC", "1"}};
    }
    karvo_ = std::make_unique<Karvo>(desktop_, options);
    // The guard is there too, as it is long before anybody locks.
    if (!karvo_->waitUntilReady() ||
        !eventually([&] { return screen.hasOwner("_KARVO_STAND_IN"); }))
        throw std::runtime_error("the program did not get ready");
    secret_->takeFocus();
    judge_ =
        std::make_unique<Judge>(desktop_.display(), secretColour,
                                "unix:path=" + (desktop_.folder() / "system-bus").string(), asked);
}

void Life::say(const std::string& what) {
    history_ += fmt::format(" {:.0f}:{}", judge_->now(), what);
}

void Life::violation(const std::string& kind, const std::string& what) {
    report_.violations[kind].push_back(what + " |" + history_);
}

bool Life::isOpen() {
    // Beside the program's own windows, which may open in the middle.
    const Area side{secretArea.x + 20, secretArea.y + 60, 150, secretArea.height - 120};
    return desktop_.screen().picture(side).shareOf(secretColour) > 0.95;
}

bool Life::isCovered() {
    return desktop_.screen().picture().shareOf(secretColour) == 0;
}

void Life::live() {
    const int locks = draw(1, 2);
    for (int i = 0; i < locks && report_.violations.empty(); ++i) {
        // Each cover begins with a clear picture. Over one that still fades away it could not be
        // told when the lock is up.
        if (i > 0) std::this_thread::sleep_for(400ms);
        oneLock();
    }
    const auto verdict = judge_->verdict();
    report_.counts["samples"] += static_cast<int>(verdict.samples);
    report_.counts["seconds-locked"] += static_cast<int>(verdict.watched / 1000);
    for (const auto& gap : verdict.gaps) {
        const std::string who = gap.guardToo ? "both-killed" : "app-killed";
        report_.times[who + ":shown-until-asked"].push_back(gap.shown);
        report_.times[who + ":shown-in-all"].push_back(gap.bare);
        if (gap.untilAsked >= 0) report_.times[who + ":until-asked"].push_back(gap.untilAsked);
        report_.counts[who + (gap.shown > 0 ? "-and-shown" : "-and-never-shown")] += 1;
        if (gap.shown >= 50 && !gap.guardToo)
            violation("gap", fmt::format("shown for {:.0f} ms after a kill", gap.shown));
    }
    for (const auto& [at, part] : verdict.shown)
        violation(windowManagerDiedAt_ <= at && at < windowManagerDiedAt_ + 100
                      ? "shown-as-the-window-manager-died"
                      : "shown",
                  fmt::format("at {:.0f} for {:.1f} ms", at, part));
}

void Life::oneLock() {
    auto& screen = desktop_.screen();
    killed_ = Killed::nobody;
    secret_->takeFocus();
    const double begun = judge_->now();
    if (chance(70) || !sessionBusIsThere_) {
        say("lock by key");
        screen.press({XK_Super_L, XK_l});
    } else {
        say("lock by URL");
        karvo_->startAgain({"karvo://lock"});
    }
    if (!eventually([&] { return isCovered(); })) return violation("no-lock", "did not come up");
    judge_->lockIsUp(begun);
    report_.counts["locks"] += 1;
    say("covered");
    // The keyboard is taken right after the covers are shown; the keys of the shortcut are past.
    eventually([&] { return screen.keyboardIsGrabbed(); }, 1s);
    heard_ = heard();

    const int number = draw(1, 6);
    int total = 0;
    for (const auto& fault : faults()) total += fault.weight;
    for (int i = 0; i < number; ++i) {
        std::this_thread::sleep_for(
            std::chrono::milliseconds(chance(50) ? draw(0, 30) : draw(0, 900)));
        int at = draw(1, total);
        const auto* fault = &faults().front();
        while ((at -= fault->weight) > 0) ++fault;
        say(fault->name);
        report_.faults[fault->name] += 1;
        fault->happen(*this);
        listen();
        checkFiles();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(draw(0, 1500)));
    listen();
    repair();
    comeBack();
}

int Life::heard() {
    return secret_->keyPresses() + outside_->keyPresses() + secret_->clicks() + outside_->clicks();
}

/// A person types and clicks, or leans on the keyboard, and nobody behind the lock may hear.
void Life::listen() {
    auto& screen = desktop_.screen();
    screen.type(canary);
    // Away from the card.
    if (chance(50)) screen.click(draw(100, 1100), draw(300, 600));
    const int now = heard();
    report_.counts["typed-or-clicked"] += 1;
    if (now != heard_) {
        const auto what =
            fmt::format("{} at {:.0f} (apps {} guards {} clicks {})", now - heard_, judge_->now(),
                        karvo_->apps().size(), karvo_->guards().size(), secret_->clicks());
        // With both programs dead there is nobody to keep anything.
        if (killed_ == Killed::both)
            report_.counts["heard-after-both-killed"] += now - heard_;
        else
            violation(killed_ == Killed::app ? "heard-after-kill" : "heard", what);
    }
    heard_ = now;
}

void Life::repair() {
    assassins_.clear();
    while (!repairs_.empty()) {
        repairs_.back()();
        repairs_.pop_back();
    }
    windows_.clear();
    guardIsFrozen_ = false;
    desktop_.setPam(std::string("password ") + Desktop::password + "\n");
    say("repaired");
}

void Life::submit(const std::string& password) {
    auto& screen = desktop_.screen();
    // What others typed before. A locker looks away for a while after a wrong password.
    for (int i = 0; i < 24; ++i) screen.press({XK_BackSpace});
    screen.type(password);
    judge_->lockMayEnd();
    screen.press({XK_Return});
}

void Life::comeBack() {
    const double start = judge_->now();
    const auto isBack = [&] { return isOpen() && !std::filesystem::exists(karvo_->markerFile()); };
    const bool came = eventually(
        [&] {
            if (eventually(isBack, 100ms)) return true;
            if (isOpen() && karvo_->apps().empty()) {
                // Killed twice, and nobody else has locked: the desktop stands open. Whoever
                // starts the program again finds it locked.
                report_.counts["left-open-after-two-kills"] += 1;
                say("start by hand");
                judge_->lockMayEnd();
                karvo_->startAgain();
                eventually([&] { return isCovered(); }, 10s);
            }
            submit(Desktop::password);
            if (eventually(isBack, 3s)) return true;
            return false;
        },
        90s);
    judge_->lockMayEnd();
    report_.times["back"].push_back(judge_->now() - start);
    if (!came) {
        desktop_.keepPicture("shut-out");
        return violation("shut-out", fmt::format("apps {} guards {} hint {} grabbed {} marker {}",
                                                 karvo_->apps().size(), karvo_->guards().size(),
                                                 logindIsThere_ && desktop_.logind().lockedHint(),
                                                 desktop_.screen().keyboardIsGrabbed(),
                                                 std::filesystem::exists(karvo_->markerFile())));
    }
    say("back");
    checkFiles();
    secret_->takeFocus();
    desktop_.screen().sync();
    const int before = secret_->keyPresses();
    if (!eventually(
            [&] {
                secret_->takeFocus();
                desktop_.screen().type(canary);
                if (secret_->keyPresses() > before) return true;
                // The session's own locker was only waiting for the keyboard.
                if (!isOpen()) submit(Desktop::password);
                return false;
            },
            20s))
        violation(
            "shut-out",
            fmt::format("the desktop hears no key; grabbed {} focus {:#x} secret {:#x} guards "
                        "{} apps {}",
                        desktop_.screen().keyboardIsGrabbed(), desktop_.screen().focusedWindow(),
                        secret_->id(), karvo_->guards().size(), karvo_->apps().size()));
}

void Life::checkFiles() {
    const auto isObject = [](const std::string& text) {
        return nlohmann::json::parse(text, nullptr, false).is_object();
    };
    const auto check = [&](const std::filesystem::path& file, bool mustExist, auto isGood) {
        const bool exists = std::filesystem::exists(file);
        const auto text = readFile(file);
        // It may have been taken away between the two.
        if (exists ? !isGood(text) && std::filesystem::exists(file) : mustExist)
            violation("file", fmt::format("{} is '{}'", file.filename().string(), text));
    };
    const auto data = desktop_.dataFolder() / "Karvo";
    check(desktop_.configFolder() / "Karvo/settings.json", true, isObject);
    check(data / "state.json", false, isObject);
    check(data / "attempts.json", false, [](const std::string& text) {
        return !nlohmann::json::parse(text, nullptr, false).is_discarded();
    });
}

// Faults

void Life::kill(bool app, bool guard) {
    auto victims = app ? karvo_->apps() : std::vector<pid_t>();
    const bool appRuns = !victims.empty();
    if (guard) std::ranges::copy(karvo_->guards(), std::back_inserter(victims));
    const double now = judge_->now();
    if (appRuns) {
        // A guard that has just been started anew has no stand-in yet.
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
    // The app that was started anew has not come far by then.
    if (guard && killed_ == Killed::app && now - killedAt_ < appComesBack) killed_ = Killed::both;
    for (const pid_t pid : victims) ::kill(pid, SIGKILL);
}

void Life::jumpClock(int seconds) {
    const auto file = desktop_.folder() / "clock";
    writeFile(file.string() + ".new", fmt::format("{:+}\n", seconds));
    std::filesystem::rename(file.string() + ".new", file);
}

void Life::freeze(const std::vector<pid_t>& pids) {
    for (const pid_t pid : pids) ::kill(pid, SIGSTOP);
    const auto thaw = [pids] {
        for (const pid_t pid : pids) ::kill(pid, SIGCONT);
    };
    if (chance(50)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(draw(10, 1500)));
        thaw();
    } else {
        repairs_.emplace_back(thaw);
    }
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

void Life::fillDisk(bool full) {
    const auto filler = desktop_.dataFolder() / "Karvo/filler";
    if (full)
        writeFile(filler, std::string(1 << 17, 'x'));
    else
        std::filesystem::remove(filler);
}

const std::vector<Life::Fault>& Life::faults() {
    static const std::vector<Fault> all{
        {"kill-app", 10, [](Life& life) { life.kill(true, false); }},
        {"kill-guard", 4, [](Life& life) { life.kill(false, true); }},
        {"kill-both", 1, [](Life& life) { life.kill(true, true); }},
        // While something else happens.
        {"kill-app-soon", 5,
         [](Life& life) {
             const std::chrono::milliseconds wait(life.draw(0, 900));
             life.assassins_.emplace_back([&life, wait] {
                 std::this_thread::sleep_for(wait);
                 life.kill(true, false);
             });
         }},
        {"kill-guard-soon", 2,
         [](Life& life) {
             const std::chrono::milliseconds wait(life.draw(0, 900));
             life.assassins_.emplace_back([&life, wait] {
                 std::this_thread::sleep_for(wait);
                 life.kill(false, true);
             });
         }},
        {"freeze-app", 5, [](Life& life) { life.freeze(life.karvo_->apps()); }},
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
             life.windowOnTop(SampleWindow::Kind::popup);
             auto* const menu = life.windows_.back().get();
             menu->grab();
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
