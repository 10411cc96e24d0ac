#include "OrvelLock/AppKitLockPresenter.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "OrvelCore/Brand.h"
#include "OrvelCore/Match.h"
#include "OrvelLock/CardPlacement.h"
#include "OrvelLock/ScreenDiff.h"

namespace OrvelLock {

using OrvelUI::LockCardModel;

namespace {

/// Durations in seconds.
constexpr double coverFade = 0.28;
constexpr double uncoverFade = 0.24;
constexpr double tickInterval = 0.5;
/// The card shows the time of day in minutes, in every time zone.
constexpr double clockPeriod = 60;
constexpr double reclaimPatience = 0.25;
/// The card's view needs this time to pick up a new context.
constexpr double contextPickUp = 0.15;
constexpr double biometricRetry = 1.0;

OrvelSystem::Task<void> evaluate(
    decltype(LockPresenterSystem::evaluateBiometrics) evaluateBiometrics,
    std::shared_ptr<OrvelSystem::BiometricContext> context, OrvelSystem::Cancellation cancellation,
    std::function<void(const OrvelAuth::BiometricResult&)> ended) {
    auto prompt = evaluateBiometrics(context, "unlock " + std::string(OrvelCore::Brand::name));
    const auto result = co_await prompt;
    if (!cancellation.isCancelled()) ended(result);
}

}  // namespace

AppKitLockPresenter::AppKitLockPresenter(LockCardModel& model, std::function<double()> clock,
                                         LockPresenterSystem system)
    : model_(model), clock_(std::move(clock)), system_(std::move(system)) {}

AppKitLockPresenter::~AppKitLockPresenter() {
    biometricTask_.cancel();
}

void AppKitLockPresenter::cover() {
    if (isPreviewing_) endPreview();
    const auto displays = prepare();
    const double duration = std::exchange(instantNextCover, false) ? 0 : fade(coverFade);
    for (const auto& display : displays) addSurface(display, duration);
    focusCard();
    startObserving();
    ticksWithin_ = 0;
    scheduleTick();
    startBiometrics();
    onCoverChanged(true);
}

void AppKitLockPresenter::uncover() {
    stopBiometrics();
    observers_ = {};
    pendingReclaim_.reset();
    tickTimer_.cancel();
    nextTick_.reset();
    takeDown(fade(uncoverFade));
    model_.reset();
    onCoverChanged(false);
}

void AppKitLockPresenter::showVerifying() {
    model_.status.set(LockCardModel::Verifying{});
}

void AppKitLockPresenter::showWrongPassword() {
    model_.registerFailure();
}

void AppKitLockPresenter::showCooldown(double until) {
    // The card counts down by the wall clock, the machine by the monotonic clock.
    const double remaining = std::max(0.0, until - clock_());
    const auto now = system_.wallClock();
    // The card read the time at its last tick; without this it would show up to a second too much.
    model_.now.set(now);
    model_.cooldownTotal.set(remaining);
    model_.status.set(LockCardModel::Cooldown{now + OrvelCore::Seconds(remaining)});
}

void AppKitLockPresenter::showPasswordsPaused() {
    model_.status.set(LockCardModel::PasswordsPaused{});
}

void AppKitLockPresenter::showReady() {
    model_.status.set(LockCardModel::Ready{});
}

void AppKitLockPresenter::showUnavailable() {
    model_.status.set(LockCardModel::Unavailable{});
}

void AppKitLockPresenter::reconcileScreens() {
    const auto displays = system_.displays();
    remember(displays);
    std::map<std::uint32_t, OrvelCore::Rect> existing;
    for (const auto& [id, surface] : surfaces_) existing.emplace(id, surface->frame());
    std::map<std::uint32_t, OrvelCore::Rect> current;
    for (const auto& display : displays) current.emplace(display.id, display.frame);

    const auto diff = ScreenDiff::plan(existing, current);
    for (const auto id : diff.remove) {
        surfaces_.at(id)->remove();
        surfaces_.erase(id);
    }
    for (const auto id : diff.reframe) surfaces_.at(id)->setFrame(current.at(id));
    const auto oldCardDisplay = std::exchange(
        cardDisplay_, CardPlacement::display(cardDisplay_, system_.pointer(), displays));
    // No fade: a new display must not show anything, not even briefly.
    for (const auto id : diff.add)
        addSurface(*std::ranges::find(displays, id, &DisplayInfo::id), 0);
    if (cardDisplay_ != oldCardDisplay) {
        for (const auto& [id, surface] : surfaces_) {
            surface->setAcceptsKeyboard(id == cardDisplay_);
            surface->setContent(content(id));
        }
    }
    focusCard();
}

void AppKitLockPresenter::rehearse() {
    if (!surfaces_.empty()) return;
    for (const auto& display : system_.displays())
        system_.rehearse(display, look(),
                         {.kind = LockContent::card, .model = &model_, .notch = display.notch});
}

void AppKitLockPresenter::preview(double seconds) {
    if (!surfaces_.empty()) return;
    isPreviewing_ = true;
    const double duration = fade(coverFade);
    for (const auto& display : prepare()) addSurface(display, duration);
    for (const auto& [id, surface] : surfaces_) surface->setAcceptsKeyboard(false);
    previewEnd_ = system_.loop.after(seconds, [this] { endPreview(); });
}

void AppKitLockPresenter::endPreview() {
    isPreviewing_ = false;
    previewEnd_.cancel();
    takeDown(fade(uncoverFade));
}

double AppKitLockPresenter::fade(double seconds) const {
    return system_.reduceMotion() ? 0 : seconds;
}

std::vector<DisplayInfo> AppKitLockPresenter::prepare() {
    currentLook_ = look();
    model_.reset();
    model_.now.set(system_.wallClock());
    auto displays = system_.displays();
    remember(displays);
    cardDisplay_ = CardPlacement::display(std::nullopt, system_.pointer(), displays);
    return displays;
}

void AppKitLockPresenter::remember(const std::vector<DisplayInfo>& displays) {
    notches_.clear();
    for (const auto& display : displays) {
        if (display.notch) notches_.emplace(display.id, *display.notch);
    }
}

void AppKitLockPresenter::addSurface(const DisplayInfo& display, double duration) {
    auto surface = system_.makeSurface(display, currentLook_);
    surface->setAcceptsKeyboard(display.id == cardDisplay_);
    surface->setContent(content(display.id));
    const auto& shown = surfaces_[display.id] = std::move(surface);
    shown->show(currentLook_.radius, duration);
}

LockSurfaceContent AppKitLockPresenter::content(std::uint32_t display) {
    const auto notch = notches_.find(display);
    return {.kind = display == cardDisplay_ ? LockContent::card : LockContent::pill,
            .model = &model_,
            .notch = notch == notches_.end() ? std::nullopt : std::optional(notch->second)};
}

LockSurface* AppKitLockPresenter::cardSurface() const {
    if (!cardDisplay_) return nullptr;
    const auto card = surfaces_.find(*cardDisplay_);
    return card == surfaces_.end() ? nullptr : card->second.get();
}

void AppKitLockPresenter::takeDown(double duration) {
    cardDisplay_.reset();
    for (auto& [id, owned] : std::exchange(surfaces_, {})) {
        LockSurface* const surface = owned.get();
        fading_.push_back(std::move(owned));
        surface->setAcceptsKeyboard(false);
        surface->hide(duration, [this, surface] {
            surface->setContent(std::nullopt);
            // Deferred, because this closure may belong to the surface.
            system_.loop.post(lifetime_.guard([this, surface] {
                std::erase_if(fading_, [&](const auto& gone) { return gone.get() == surface; });
            }));
        });
    }
}

void AppKitLockPresenter::focusCard() {
    const auto card = cardSurface();
    if (!card) return;
    card->makeKey();
    model_.hasKeyboard.set(card->isKey());
}

void AppKitLockPresenter::reclaimFocus() {
    if (!cardDisplay_) return;
    focusCard();
    system_.activateApp();
    if (pendingReclaim_) return;
    pendingReclaim_ = system_.loop.after(reclaimPatience, [this] { checkReclaim(); });
    onFocusLost();
}

void AppKitLockPresenter::checkReclaim() {
    pendingReclaim_.reset();
    const auto card = cardSurface();
    if (!card) return;
    if (!system_.appIsActive() || !card->isKey()) onReclaimFailed();
}

void AppKitLockPresenter::startObserving() {
    observers_ = system_.observe({
        .appActivated =
            [this](std::int64_t pid) {
                if (pid != system_.ownPID) reclaimFocus();
            },
        .keyChanged = [this](OrvelCore::WindowID window) { keyChanged(window); },
    });
}

void AppKitLockPresenter::keyChanged(OrvelCore::WindowID window) {
    const auto card = cardSurface();
    if (!card || !card->owns(window)) return;
    const bool isKey = card->isKey();
    model_.hasKeyboard.set(isKey);
    if (!isKey) reclaimFocus();
}

void AppKitLockPresenter::tick() {
    model_.now.set(system_.wallClock());
    scheduleTick();
    onTick();
}

void AppKitLockPresenter::catchUp() {
    if (nextTick_) tick();
}

void AppKitLockPresenter::tickWithin(double seconds) {
    ticksWithin_ = seconds;
    if (nextTick_ && clock_() + std::max(tickInterval, seconds) < *nextTick_) scheduleTick();
}

void AppKitLockPresenter::scheduleTick() {
    const double clockTurns =
        clockPeriod - std::fmod(OrvelCore::secondsSince1970(system_.wallClock()), clockPeriod);
    const double delay = std::max(tickInterval, std::min(ticksWithin_, clockTurns));
    nextTick_ = clock_() + delay;
    tickTimer_ = system_.loop.after(delay, [this] { tick(); });
}

void AppKitLockPresenter::startBiometrics() {
    const bool available = system_.biometricsAvailable();
    model_.touchIDAvailable.set(available);
    if (!available) return;
    biometricTask_ = {};
    promptBiometrics();
}

void AppKitLockPresenter::stopBiometrics() {
    biometricTask_.cancel();
    biometricPause_.cancel();
    if (const auto context = model_.biometricContext.get()) context->invalidate();
    model_.biometricContext.set(nullptr);
}

void AppKitLockPresenter::promptBiometrics() {
    const auto context = system_.makeBiometricContext();
    model_.biometricContext.set(context);
    biometricPause_ = system_.loop.after(contextPickUp, [this, context] {
        OrvelSystem::spawn(system_.loop,
                           evaluate(system_.evaluateBiometrics, context, biometricTask_,
                                    [this](const OrvelAuth::BiometricResult& result) {
                                        biometricsEnded(result);
                                    }));
    });
}

void AppKitLockPresenter::biometricsEnded(const OrvelAuth::BiometricResult& result) {
    const auto retry = [this] {
        biometricPause_ = system_.loop.after(biometricRetry, [this] { promptBiometrics(); });
    };
    const auto giveUp = [this] {
        model_.touchIDAvailable.set(false);
        model_.biometricContext.set(nullptr);
    };
    OrvelCore::match(
        result, [this](const OrvelAuth::BiometricSuccess&) { onBiometricAccepted(); },
        [&](const OrvelAuth::BiometricLockout&) { giveUp(); },
        [&](const OrvelAuth::BiometricUnavailable&) { giveUp(); },
        [&](const OrvelAuth::BiometricCancelled&) { retry(); },
        [&](const OrvelAuth::BiometricFailed&) { retry(); });
}

}  // namespace OrvelLock
