#include "OrvelApp/Guard/Guard.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <fmt/format.h>

#include "OrvelCore/Brand.h"
#include "OrvelCore/Match.h"

namespace OrvelApp {

using namespace OrvelCore;

namespace {

/// Seconds that a locker has to report that it is on.
constexpr double confirmationTimeout = 2;
/// Seconds that the app has to cover the screen.
constexpr double coverTimeout = 5;

}  // namespace

Guard::Guard(std::string bootSession)
    // The account's limit is not used, because nothing else would open the screen.
    : bootSession_(std::move(bootSession)), unlock_(Backoff::standard({})) {}

bool Guard::isMarked(const GuardSurroundings& system) const {
    const auto marker = system.marker();
    return marker && marker->bootSession == bootSession_;
}

void Guard::started(GuardSurroundings& system) {
    perform(system, GuardPolicy::onGuardStart(system.marker(), bootSession_, system.appRuns()));
}

void Guard::appEnds(GuardSurroundings& system) {
    const auto action =
        GuardPolicy::onOrvelExit(system.marker(), bootSession_, lastRelaunch_, system.now());
    if (action != GuardAction::stay) system.hide();
}

void Guard::appExited(GuardSurroundings& system) {
    // The app could not write a marker for this lock, and its stand-in is up. Write one now,
    // because the policy does nothing without a marker.
    if (isUp_ && !isMarked(system)) (void)system.mark();
    perform(system,
            GuardPolicy::onOrvelExit(system.marker(), bootSession_, lastRelaunch_, system.now()));
}

void Guard::perform(GuardSurroundings& system, GuardAction action) {
    if (action == GuardAction::stay) return;
    const auto marker = system.marker();
    const bool isRepeated =
        lastRelaunch_ && system.now() - *lastRelaunch_ < GuardPolicy::relaunchCooldown;
    relaunchDelay_ = marker && marker->isHandedOff && !isRepeated ? GuardPolicy::lockerPatience
                                                                  : GuardPolicy::relaunchCooldown;
    // Engaging a lock may require starting a program, so hide the screen first.
    system.hide();
    if (system.staysClosed()) {
        isClosed_ = true;
        upSince_ = system.now();
    }
    // The app takes a closed session over, unless a locker was faster.
    const bool leavesItToApp = isClosed_ && action == GuardAction::engageMacOSLockAndRelaunch;
    GuardResponder{.engageLock =
                       [&] {
                           if (!leavesItToApp) engageLock(system);
                       },
                   .relaunch = [&] { relaunch(system); }}
        .perform(action);
    // A relaunched app that is gone again counts as a second exit.
    if (action == GuardAction::engageMacOSLockAndRelaunch && !system.appRuns()) appExited(system);
}

void Guard::relaunch(GuardSurroundings& system) {
    lastRelaunch_ = system.now();
    system.relaunch();
}

void Guard::engageLock(GuardSurroundings& system) {
    system.engageLock();
    confirmUntil_ = system.now() + confirmationTimeout;
}

void Guard::standInRose(GuardSurroundings& system) {
    if (isUp_) return;
    isUp_ = true;
    upSince_ = system.now();
    if (!isMarked(system)) {
        // Without a marker the policy does nothing when the app ends.
        engageLock(system);
        if (!system.appRuns()) appExited(system);
    }
    say(system);
}

void Guard::standInFell() {
    isUp_ = false;
    unlock_ = AppUnlockMachine(unlock_.backoff);
    verdict_.clear();
}

void Guard::entered(GuardSurroundings& system, bool isEmpty) {
    if (!isUp_) return;
    if (!isEmpty) return handle(system, AppUnlockMachine::Event::passwordSubmitted);
    // Without a marker the app would start without a lock and leave the stand-in up.
    if (!system.appRuns() && (isMarked(system) || system.mark())) relaunch(system);
    say(system);
}

void Guard::checked(GuardSurroundings& system, Verdict verdict) {
    using Event = AppUnlockMachine::Event;
    switch (verdict) {
        case Verdict::accepted:
            return handle(system, Event::passwordAccepted);
        case Verdict::rejected:
            system.recordFailedAttempt();
            return handle(system, Event::passwordRejected);
        case Verdict::unavailable:
            return handle(system, Event::passwordUnavailable);
    }
}

void Guard::handle(GuardSurroundings& system, AppUnlockMachine::Event event) {
    for (const auto& effect : unlock_.handle(event, system.now())) {
        match(
            effect, [&](const AppUnlockEffects::VerifyPassword&) { system.checkPassword(); },
            [&](const AppUnlockEffects::ShowWrongPassword&) { verdict_ = "Incorrect password."; },
            [&](const AppUnlockEffects::ShowUnavailable&) {
                verdict_ = "Couldn't check the password.";
            },
            [&](const AppUnlockEffects::Unlock&) {
                system.clearMarker();
                system.reveal();
                if (!system.appRuns()) relaunch(system);
            },
            [](const auto&) {});
    }
    if (isUp_) say(system);
}

void Guard::tick(GuardSurroundings& system) {
    const double now = system.now();
    if (confirmUntil_) {
        if (system.systemIsLocked()) {
            confirmUntil_.reset();
        } else if (now >= *confirmUntil_) {
            confirmUntil_.reset();
            // With a bare window manager no locker listens to logind.
            system.engageLockFallback();
        }
    }
    isClosed_ = isClosed_ && !system.appRuns() && isMarked(system);
    if (isUp_) handle(system, AppUnlockMachine::Event::clockTick);
    if (!isUp_ && !isClosed_) return;
    if (!system.appRuns() && isMarked(system) && now - waitingSince() >= relaunchDelay_)
        relaunch(system);
}

double Guard::waitingSince() const {
    return std::max(upSince_, lastRelaunch_.value_or(upSince_));
}

void Guard::say(GuardSurroundings& system) const {
    using namespace AppUnlockPhases;
    const double now = system.now();
    const bool appRuns = system.appRuns();
    if (appRuns && now - waitingSince() < coverTimeout) return system.say({});
    const auto text = match(
        unlock_.phase, [](const Verifying&) { return std::string("Checking the password."); },
        [&](const Cooldown& cooldown) {
            return fmt::format("Incorrect password. Try again in {:.0f} s.",
                               std::ceil(std::max(0.0, cooldown.until - now)));
        },
        [&](const auto&) {
            return fmt::format("{}{} {}", verdict_.empty() ? "" : verdict_ + " ", Brand::name,
                               appRuns ? "does not respond. Type your password."
                                       : "has stopped. Type your password, or press Return to "
                                         "bring back the lock.");
        });
    system.say(text);
}

}  // namespace OrvelApp
