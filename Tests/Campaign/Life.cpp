#include "Life.h"

#include <nlohmann/json.hpp>
#include <sched.h>
#include <sys/mount.h>

namespace Campaign {

using namespace std::chrono_literals;

namespace {

constexpr Area secretArea{60, 60, 1100, 600};
// Visible only while the screen is wide.
constexpr Area outsideArea{1400, 100, 400, 500};
// A library that fakes the time of day. If it is not installed, the clock never jumps.
constexpr const char* faketime = "/usr/lib/x86_64-linux-gnu/faketime/libfaketime.so.1";
// Milliseconds after the last fault within which the password must unlock.
constexpr double wayOut = 10'000;
// Milliseconds for which the screen may be visible after another program acts on Karvo's window.
constexpr double healing = 50;
// A key that occurs in no password.
constexpr const char* canary = "q";

Desktop::Options optionsFor(std::minstd_rand& random) {
    random.discard(5);
    Desktop::Options options;
    options.windowManager = random() % 8 != 0;
    options.realDevices = random() / 8 % 4 != 0;
    options.width = wide;
    options.height = high;
    return options;
}

// The programs that lock the session, in the lives that have a locker. Some of them fail.
constexpr const char* lockers[] = {SessionLocker::i3lock,
                                   SessionLocker::xsecurelock,
                                   "exit 1",
                                   "sleep 2",
                                   "exec sleep 1000",
                                   "exec timeout 12 i3lock -n -c 203040",
                                   "exec timeout -s SEGV 3 i3lock -n -c 203040"};

}  // namespace

void Life::SmallDisk::begin(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    // The mount is visible only to this process and its children.
    if (unshare(CLONE_NEWNS) == 0 &&
        mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
        mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=64k") == 0)
        mounted = folder;
}

Life::SmallDisk::~SmallDisk() {
    if (!mounted.empty()) umount2(mounted.c_str(), MNT_DETACH);
}

Life::Life(unsigned seed)
    : random_(seed * 7919 + 1),
      desktop_(optionsFor(random_)),
      usesDevices_(dynamic_cast<DeviceInput*>(&desktop_.screen().input())) {
    const bool hasLocker = chance(60);
    const auto* const locker = lockers[draw(0, std::size(lockers) - 1)];
    auto& screen = desktop_.screen();
    screen.resize(narrow, high);
    // The session's second way to lock; this one appends its arguments to a file.
    const auto tools = desktop_.folder() / "tools";
    const auto asked = desktop_.folder() / "asked";
    std::filesystem::create_directories(tools);
    writeText(tools / "xdg-screensaver", "#!/bin/sh\necho \"$@\" >> '" + asked.string() + "'\n");
    std::filesystem::permissions(tools / "xdg-screensaver", std::filesystem::perms::owner_all);
    desktop_.environment()["PATH"] = tools.string() + ":/usr/bin:/bin";
    // In half of the lives each lock is handed off, whether or not there is a locker.
    writeText(desktop_.configFolder() / "Karvo/settings.json",
              fmt::format(R"({{"soundsOn": false, "handOffAfter": {}}})",
                          chance(50) ? draw(1, 4) : 1800));
    if (chance(50)) disk_.begin(desktop_.dataFolder() / "Karvo");
    // The desktop has windows of its own, so the wallpaper is never all that is visible.
    secret_ = &desktop_.addWindow(secretArea, secretColour, SampleWindow::Kind::normal, "Secret");
    outside_ = std::make_unique<SampleWindow>(desktop_.display(), outsideArea, secretColour,
                                              SampleWindow::Kind::popup, "Outside");
    // A window manager that is still handling the changed displays may ignore the window.
    const auto isThere = [&] {
        secret_->map();
        return eventually([&] { return isOpen(); }, 2s);
    };
    if (!eventually(isThere)) {
        desktop_.keepPicture("no-secret-window");
        throw std::runtime_error("no secret window");
    }
    if (hasLocker) locker_ = std::make_unique<SessionLocker>(desktop_, locker);
    Karvo::Options options;
    fakesClock_ = std::filesystem::exists(faketime) && chance(30);
    if (fakesClock_) {
        jumpClock(0);
        options.environment = {{"LD_PRELOAD", std::string("libpam_wrapper.so:") + faketime},
                               {"FAKETIME_TIMESTAMP_FILE", desktop_.folder() / "clock"},
                               {"FAKETIME_NO_CACHE", "1"},
                               // Otherwise the programs share a lock, which a killed program never
                               // releases.
                               {"NO_FAKE_STAT", "1"},
                               {"FAKETIME_DONT_FAKE_MONOTONIC", "1"}};
    }
    karvo_ = std::make_unique<Karvo>(desktop_, options);
    // The guard must be up too; in normal use it is, long before the first lock.
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
    // An area beside the program's own windows, which may open in the middle.
    const Area side{secretArea.x + 20, secretArea.y + 60, 150, secretArea.height - 120};
    return desktop_.screen().picture(side).shareOf(secretColour) > 0.95;
}

bool Life::isCovered() {
    return desktop_.screen().picture().shareOf(secretColour) == 0;
}

void Life::live() {
    const int locks = draw(1, 2);
    for (int i = 0; i < locks && report_.violations.empty(); ++i) {
        // Wait until the previous cover has faded out. Otherwise `isCovered` could not tell when
        // the next one is up.
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
    for (const auto& [at, part] : verdict.shown) {
        const auto justAfter = [at](double event) { return event <= at && at < event + 100; };
        if (std::ranges::any_of(rivalActs_, justAfter) && part < healing) {
            report_.times["shown-until-healed"].push_back(part);
            continue;
        }
        violation(justAfter(windowManagerDiedAt_) ? "shown-as-the-window-manager-died" : "shown",
                  fmt::format("at {:.0f} for {:.1f} ms", at, part));
    }
}

void Life::oneLock() {
    auto& screen = desktop_.screen();
    killed_ = Killed::nobody;
    secret_->takeFocus();
    ranBefore_ = desktop_.shortcutRuns();
    // The guard may just have started the program again.
    if (!eventually([&] { return screen.comboIsGrabbed(XCB_MOD_MASK_4, XK_l); }))
        throw std::runtime_error("the program did not come back");
    const bool needsURL = openSomething();
    const double begun = judge_->now();
    if ((chance(70) && !needsURL) || !sessionBusIsThere_) {
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
    // The keyboard is grabbed right after the covers are up. Keys of the shortcut are not counted.
    const double covered = judge_->now();
    const auto keysAreTaken = [&] {
        if (!screen.keyboardIsGrabbed()) return false;
        heard_ = heard();
        screen.type(canary);
        return heard() == heard_;
    };
    if (!eventually(keysAreTaken, 1s)) violation("heard", "the keys were not taken within 1 s");
    report_.times["covered-to-keys-taken"].push_back(judge_->now() - covered);

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
    int keys = 0;
    for (const auto& window : windows_) keys += window->keyPresses() + window->clicks();
    return keys + secret_->keyPresses() + outside_->keyPresses() + secret_->clicks() +
           outside_->clicks();
}

/// Types and clicks like a person at the locked screen, and checks that no program behind the lock
/// receives it.
void Life::listen() {
    auto& screen = desktop_.screen();
    // The lock has to take back what a rival has just taken.
    const double wait = rivalTookKeysAt_ + healing - judge_->now();
    if (wait > 0) std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(wait));
    for (int keyboard = 1; keyboard >= 0; --keyboard) {
        if (usesDevices_) desktop_.devices().useKeyboard(keyboard);
        screen.type(canary);
        screen.press({XK_Super_L, XK_r});
    }
    // A place beside the card.
    if (chance(50)) screen.click(draw(100, 1100), draw(300, 600));
    const int now = heard();
    report_.counts["typed-or-clicked"] += 1;
    if (now != heard_) {
        const auto what =
            fmt::format("{} at {:.0f} (apps {} guards {} clicks {})", now - heard_, judge_->now(),
                        karvo_->apps().size(), karvo_->guards().size(), secret_->clicks());
        // With both programs killed, nothing can hold the keyboard.
        if (killed_ == Killed::both)
            report_.counts["heard-after-both-killed"] += now - heard_;
        else
            violation(killed_ == Killed::app ? "heard-after-kill" : "heard", what);
    }
    heard_ = now;
    const int runs = desktop_.shortcutRuns() - ranBefore_;
    if (runs > 0 && killed_ != Killed::both)
        violation("shortcut", fmt::format("ran {} programs", runs));
    ranBefore_ += runs;
}

void Life::repair() {
    assassins_.clear();
    while (!repairs_.empty()) {
        repairs_.back()();
        repairs_.pop_back();
    }
    windows_.clear();
    guardIsFrozen_ = appIsFrozen_ = false;
    if (logindIsThere_ && !locker_) desktop_.logind().setLockedHint(false);
    // End a hanging locker, as the owner would from another terminal.
    for (const pid_t pid : descendantsRunning("/usr/bin/sleep")) ::kill(pid, SIGKILL);
    desktop_.setPam(std::string("password ") + Desktop::password + "\n");
    say("repaired");
}

void Life::submit(const std::string& password) {
    auto& screen = desktop_.screen();
    // Clear earlier input. A locker ignores keys for a moment after a wrong password.
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
                // With both programs killed, the desktop is open. The next start of the program
                // must lock it.
                if (killed_ == Killed::both)
                    report_.counts["left-open-after-both-killed"] += 1;
                else
                    violation("left-open", "without a password");
                say("start by hand");
                judge_->lockMayEnd();
                karvo_->startAgain({"--login-item"});
                eventually([&] { return isCovered(); }, 10s);
            }
            submit(Desktop::password);
            // Wait, then type again: a locker may ask first, and the card or the stand-in after it.
            return eventually(isBack, 1500ms);
        },
        90s);
    judge_->lockMayEnd();
    report_.times["back"].push_back(judge_->now() - start);
    // With both programs killed, nothing can ask until the program is started again.
    if (came && killed_ != Killed::both && judge_->now() - start > wayOut)
        violation("late-way-out", fmt::format("{:.0f} ms", judge_->now() - start));
    if (!came) {
        desktop_.keepPicture("shut-out");
        return violation(
            "shut-out",
            fmt::format("apps {} guards {} hint {} grabbed {} focus {:#x} held {} marker {}",
                        karvo_->apps().size(), karvo_->guards().size(),
                        logindIsThere_ && desktop_.logind().lockedHint(),
                        desktop_.screen().keyboardIsGrabbed(), desktop_.screen().focusedWindow(),
                        desktop_.screen().held(), std::filesystem::exists(karvo_->markerFile())));
    }
    say("back");
    if (!eventually([&] { return desktop_.screen().held().empty(); }, 5s))
        violation("stuck", desktop_.screen().held());
    checkFiles();
    secret_->takeFocus();
    desktop_.screen().sync();
    const int before = secret_->keyPresses();
    if (!eventually(
            [&] {
                secret_->takeFocus();
                desktop_.screen().type(canary);
                if (secret_->keyPresses() > before) return true;
                // The session's own locker may have been waiting for the keyboard.
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
        const auto text = textOf(file);
        // The file may have been deleted between the check and the read.
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

}  // namespace Campaign
