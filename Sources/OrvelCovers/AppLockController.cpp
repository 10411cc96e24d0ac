#include "OrvelCovers/AppLockController.h"

#include <algorithm>
#include <utility>

#include "OrvelCore/Match.h"

namespace OrvelCovers {

using OrvelCore::Backoff;
using OrvelCore::WindowInfo;
using OrvelSystem::Sleep;
using OrvelSystem::Task;
using OrvelUI::LockCardModel;
namespace Effects = OrvelCore::AppUnlockEffects;
namespace Phases = OrvelCore::AppUnlockPhases;

namespace {

/// Seconds that a badge may take to get the keyboard, and that an app which keeps it may take to
/// hide.
constexpr double keyboardPatience = 0.25;
/// Seconds that the badge's view needs to pick up a new context.
constexpr double contextPickUp = 0.15;
constexpr double biometricRetry = 1.0;

}  // namespace

AppLockController::AppLockController(CoverLoop& loop, BadgePresenting& badges, AppLockSystem system)
    : loop_(loop), badges_(badges), system_(std::move(system)) {}

AppLockController::~AppLockController() {
    for (const auto& [pid, app] : apps_) {
        if (const auto context = app.model->biometricContext.get()) context->invalidate();
    }
}

AppLockController::LockedApp* AppLockController::find(std::int64_t pid) {
    const auto found = apps_.find(pid);
    return found == apps_.end() ? nullptr : &found->second;
}

const AppLockController::LockedApp* AppLockController::find(std::int64_t pid) const {
    const auto found = apps_.find(pid);
    return found == apps_.end() ? nullptr : &found->second;
}

std::set<std::int64_t> AppLockController::lockedPIDs() const {
    std::set<std::int64_t> pids;
    for (const auto& [pid, app] : apps_) pids.insert(pids.end(), pid);
    return pids;
}

std::optional<OrvelCore::Date> AppLockController::lockedSince(std::int64_t pid) const {
    const auto* app = find(pid);
    return app ? std::optional(app->since) : std::nullopt;
}

bool AppLockController::isUnlocking(std::int64_t pid) const {
    const auto* app = find(pid);
    return app && app->unlocking;
}

std::shared_ptr<LockCardModel> AppLockController::model(std::int64_t pid) const {
    const auto* app = find(pid);
    return app ? app->model : nullptr;
}

void AppLockController::setUnlockShortcut(std::optional<OrvelCore::Shortcut> shortcut) {
    unlockShortcut_ = std::move(shortcut);
    for (const auto& [pid, app] : apps_) app.model->unlockShortcut.set(unlockShortcut_);
}

void AppLockController::shortcutPressed() {
    if (system_.macIsLocked()) return;
    namespace Actions = OrvelCore::AppLockActions;
    OrvelCore::match(
        OrvelCore::AppLockRules::shortcut(system_.frontApp(), badgePID_, lockedPIDs()),
        [this](const Actions::Lock& action) { lock(action.pid); },
        [this](const Actions::RequestUnlock& action) { requestUnlock(action.pid); },
        [](const Actions::Ignore&) {});
}

void AppLockController::lock(std::int64_t pid) {
    if (find(pid)) return;
    const auto identity = system_.appIdentity(pid);
    if (!identity || !system_.mayLock()) return;
    const auto model = std::make_shared<LockCardModel>(identity->name, identity->icon,
                                                       system_.biometricsAvailable());
    model->unlockShortcut.set(unlockShortcut_);
    prepareModel(*model);
    model->onSubmit = lifetime_.guard([this, pid](OrvelSystem::Password password) {
        OrvelSystem::spawn(system_.loop, submit(std::move(password), pid));
    });
    apps_.emplace(pid, LockedApp{.model = model,
                                 .machine = Machine(Backoff::standard(system_.accountLimit())),
                                 .since = system_.wallClock()});
    badges_.show(pid, model);
    // The covers are up when this returns, before any observer learns of the lock.
    loop_.setLockedPIDs(lockedPIDs());
    onLocksChanged();
    if (system_.appIsActive(pid)) giveKeyboardToBadge(pid);
}

void AppLockController::requestUnlock(std::int64_t pid) {
    auto* const app = find(pid);
    if (!app || system_.macIsLocked()) return;
    app->unlocking = true;
    badges_.setUnlocking(pid, true);
    giveKeyboardToBadge(pid);
    startBiometrics(pid);
}

void AppLockController::cancelUnlock(std::int64_t pid) {
    auto* const app = find(pid);
    if (!app || !app->unlocking) return;
    stopBiometrics(pid);
    app->unlocking = false;
    app->model->password.set({});
    badges_.setUnlocking(pid, false);
}

void AppLockController::appActivated(std::int64_t pid) {
    if (find(pid)) {
        loop_.nudge();
        if (!system_.macIsLocked()) giveKeyboardToBadge(pid);
        return;
    }
    if (pid == system_.ownPID || !badgePID_) return;
    // The user has switched to another app.
    cancelUnlock(*badgePID_);
    badgePID_.reset();
}

void AppLockController::appTerminated(std::int64_t pid) {
    unlock(pid, false);
}

void AppLockController::macLocked() {
    for (const auto pid : lockedPIDs()) cancelUnlock(pid);
}

void AppLockController::windowsChanged(const std::vector<WindowInfo>& windows) {
    for (const auto pid : lockedPIDs()) {
        placeBadge(pid, windows);
        const auto* const app = find(pid);
        if (!app || !std::holds_alternative<Phases::Cooldown>(app->machine.phase)) continue;
        app->model->now.set(system_.wallClock());
        handle(Machine::Event::clockTick, pid);
    }
}

/// The badge is always on the front-most covered window of its app.
void AppLockController::placeBadge(std::int64_t pid, const std::vector<WindowInfo>& windows) {
    const auto& covers = loop_.controller();
    const auto covered = std::ranges::find_if(windows, [&](const WindowInfo& window) {
        return window.ownerPID == pid && covers.surfaceNumber(window.number);
    });
    if (covered != windows.end()) {
        badges_.place(pid, covered->bounds, covers.frontNumber(covered->number));
        if (const auto request = covers.request(covered->number))
            badges_.drawInFront(pid, request->inFront);
        return;
    }
    // The field must not disappear while the user types into it.
    if (isUnlocking(pid) && badges_.holdsKeyboard(pid)) return;
    badges_.hide(pid);
}

void AppLockController::giveKeyboardToBadge(std::int64_t pid) {
    badgePID_ = pid;
    system_.activateOrvel();
    badges_.takeKeyboard(pid);
    system_.loop.after(keyboardPatience, lifetime_.guard([this, pid] { checkKeyboard(pid); }))
        .detach();
}

/// A covered app that keeps the keyboard would still receive what is typed. The app is hidden, and
/// if it stays in front even then, the screen is locked.
void AppLockController::checkKeyboard(std::int64_t pid) {
    if (!find(pid)) return;
    if (system_.orvelIsActive() && badges_.holdsKeyboard(pid)) return;
    system_.hideApp(pid);
    system_.loop
        .after(keyboardPatience, lifetime_.guard([this, pid] {
            if (find(pid) && system_.appIsActive(pid)) system_.engageMacOSLock();
        }))
        .detach();
}

void AppLockController::unlock(std::int64_t pid, bool reveal) {
    if (!find(pid)) return;
    stopBiometrics(pid);
    // Kept until the end of the call, which may come from this app's own view.
    const auto gone = apps_.extract(pid);
    badges_.remove(pid);
    if (badgePID_ == pid) badgePID_.reset();
    loop_.setLockedPIDs(lockedPIDs());
    onLocksChanged();
    if (reveal) system_.activateApp(pid);
}

Task<void> AppLockController::submit(OrvelSystem::Password password, std::int64_t pid) {
    if (!find(pid)) co_return;
    // The limit may have changed since the app was locked.
    const auto backoff = Backoff::standard(system_.accountLimit());
    const auto failures = system_.accountFailures();
    if (failures && !backoff.passwordsAllowed(*failures)) {
        handle(Machine::Event::accountNearLimit, pid);
        co_return;
    }
    const auto effects = handle(Machine::Event::passwordSubmitted, pid);
    const Machine::Effect verify = Effects::VerifyPassword{};
    if (std::ranges::find(effects, verify) == effects.end()) co_return;
    const auto alive = lifetime_.weak();
    auto check = system_.verifier.verify(std::move(password));
    const auto result = co_await check;
    if (alive.expired()) co_return;
    auto answer = Machine::Event::passwordUnavailable;
    if (std::holds_alternative<OrvelAuth::PasswordAccepted>(result))
        answer = Machine::Event::passwordAccepted;
    else if (std::holds_alternative<OrvelAuth::PasswordRejected>(result))
        answer = Machine::Event::passwordRejected;
    handle(answer, pid);
}

std::vector<AppLockController::Machine::Effect> AppLockController::handle(Machine::Event event,
                                                                          std::int64_t pid) {
    auto* const app = find(pid);
    if (!app) return {};
    auto effects = app->machine.handle(event, system_.loop.uptime());
    for (const auto& effect : effects) perform(effect, pid);
    return effects;
}

void AppLockController::perform(const Machine::Effect& effect, std::int64_t pid) {
    const auto model = this->model(pid);
    if (!model) return;
    OrvelCore::match(
        effect,
        // Only `submit` has the password.
        [](const Effects::VerifyPassword&) {}, [&](const Effects::Unlock&) { unlock(pid, true); },
        [&](const Effects::ShowVerifying&) { model->status.set(LockCardModel::Verifying{}); },
        [&](const Effects::ShowWrongPassword&) { model->registerFailure(); },
        [&](const Effects::ShowPasswordsPaused&) {
            model->status.set(LockCardModel::PasswordsPaused{});
        },
        [&](const Effects::ShowReady&) { model->status.set(LockCardModel::Ready{}); },
        [&](const Effects::ShowUnavailable&) { model->status.set(LockCardModel::Unavailable{}); },
        [&](const Effects::ShowCooldown& cooldown) {
            // The badge counts down by the wall clock, the machine by the monotonic clock.
            const double remaining = std::max(0.0, cooldown.until - system_.loop.uptime());
            const auto now = system_.wallClock();
            model->now.set(now);
            model->cooldownTotal.set(remaining);
            model->status.set(LockCardModel::Cooldown{now + OrvelCore::Seconds(remaining)});
        });
}

void AppLockController::startBiometrics(std::int64_t pid) {
    auto* const app = find(pid);
    if (!app || app->biometricTask) return;
    const bool available = system_.biometricsAvailable();
    app->model->touchIDAvailable.set(available);
    if (!available) return;
    const OrvelSystem::Cancellation cancellation;
    app->biometricTask = cancellation;
    OrvelSystem::spawn(system_.loop, promptBiometrics(pid, cancellation, lifetime_.weak()));
}

void AppLockController::stopBiometrics(std::int64_t pid) {
    auto* const app = find(pid);
    if (!app) return;
    if (app->biometricTask) app->biometricTask->cancel();
    app->biometricTask.reset();
    const auto model = app->model;
    if (const auto context = model->biometricContext.get()) context->invalidate();
    model->biometricContext.set(nullptr);
}

Task<void> AppLockController::promptBiometrics(std::int64_t pid,
                                               OrvelSystem::Cancellation cancellation,
                                               std::weak_ptr<void> alive) {
    const auto isOver = [cancellation, alive] {
        return alive.expired() || cancellation.isCancelled();
    };
    while (!isOver()) {
        // Never null: the task is cancelled when its app is removed.
        const auto model = this->model(pid);
        const auto context = system_.makeBiometricContext();
        model->biometricContext.set(context);
        co_await Sleep(system_.loop, contextPickUp);
        if (isOver()) co_return;
        auto prompt = system_.evaluateBiometrics(context, "unlock this app");
        const auto result = co_await prompt;
        if (isOver()) co_return;
        if (std::holds_alternative<OrvelAuth::BiometricSuccess>(result)) {
            handle(Machine::Event::biometricAccepted, pid);
            co_return;
        }
        if (std::holds_alternative<OrvelAuth::BiometricLockout>(result) ||
            std::holds_alternative<OrvelAuth::BiometricUnavailable>(result)) {
            model->touchIDAvailable.set(false);
            model->biometricContext.set(nullptr);
            co_return;
        }
        co_await Sleep(system_.loop, biometricRetry);
    }
}

}  // namespace OrvelCovers
