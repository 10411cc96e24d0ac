#include "OrvelApp/AppDelegate.h"

#include <utility>

#include "OrvelCore/Brand.h"
#include "OrvelCore/LaunchPolicy.h"
#include "OrvelCore/Match.h"
#include "OrvelCore/QuitPolicy.h"

namespace OrvelApp {

using namespace OrvelCore;
using OrvelSystem::Task;

namespace {

/// Seconds after the launch, when the session has probably started its other programs.
constexpr double rehearsalDelay = 2;

}  // namespace

AppDelegate::AppDelegate(AppSystem system)
    : system_(std::move(system)),
      hotkeys_(system_.hotkeys),
      toasts_(system_.loop, system_.modes.toasts),
      settings_(system_.windows.settings) {}
AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    triggers_ = TriggerSettings::load(system_.defaults);
    prefs_ = Preferences::load(system_.defaults);
    const auto backend =
        OrvelBlur::choose(system_.blurSupport.skyLightAvailable, system_.blurSupport.osMajor,
                          system_.blurSupport.verifiedMajors);
    makeLock(backend);
    observeAuthentication();
    system_.observeSession(
        {.macOSLocked = lifetime_.guard([this] { start(session_->macOSLocked()); }),
         .macOSUnlocked = lifetime_.guard([this] { start(session_->macOSUnlocked()); }),
         .macOSLockUnknown = lifetime_.guard([this] { start(session_->macOSLockUnknown()); }),
         .sleep = lifetime_.guard([this] {
             if (sleep_) sleep_->sleepStarts();
         }),
         .wake = lifetime_.guard([this] {
             if (sleep_) sleep_->woke();
             session_->screensChanged();
             presenter_->catchUp();
             if (coverLoop_) coverLoop_->nudge();
             if (focusBlur_) focusBlur_->sample();
             woke();
         }),
         .lockRequested = lifetime_.guard([this] {
             if (sleep_) sleep_->lockRequested();
         }),
         .screensChanged = lifetime_.guard([this] {
             session_->screensChanged();
             screensChanged();
         })});
    installCovers(backend);
    installModes(backend);
    installUpdates();
    if (system_.environment.contains("ORVEL_CHECK_UPDATES_NOW")) start(updates_->checkNow());
    installStatusItem();
    refreshIcon();
    installSettings();
    installShortcuts();
    installPreferences();
    applyPreferences();
    applyTriggers();
    registerGuard();
    isLaunched_ = true;
    showFirstScreen();
    // The owner must learn this before the first lock and not because of it.
    if (!system_.passwordSuffices())
        toasts_.show("Your desktop locks the screen", asksForMore, "exclamationmark.lock");
    // After every decision about windows, so that no window opens over a lock that is resumed.
    start(session_->resumeIfMarked());
    system_.loop.after(rehearsalDelay, lifetime_.guard([this] { presenter_->rehearse(); }))
        .detach();
}

void AppDelegate::open(const std::vector<std::string>& urls) {
    if (!isLaunched_) return;
    for (const auto& url : urls) {
        const auto command = URLCommands::parse(url, Brand::urlScheme);
        if (!command) continue;
        match(
            *command, [this](URLCommands::Lock) { lockNow(false); },
            [this](URLCommands::PrivateApps apps) { setPrivateApps(apps.change); },
            [this](URLCommands::QuickBlur blur) { switchQuickBlur(blur.change); },
            [this](URLCommands::FocusBlur blur) { switchFocusBlur(blur.change); });
    }
}

void AppDelegate::screensChanged() {
    if (coverLoop_) coverLoop_->nudge();
    if (quickBlur_) quickBlur_->screensChanged();
    if (focusBlur_) focusBlur_->sample();
    if (hotCorner_) configureCorner();
}

void AppDelegate::reopen() {
    if (!isLaunched_) return;
    switch (LaunchPolicy::reopenScreen(onboarding_ != nullptr)) {
        case LaunchScreen::onboarding:
            onboarding_->bringBack();
            break;
        case LaunchScreen::settings:
            settings_.show();
            break;
        case LaunchScreen::nothing:
            break;
    }
}

bool AppDelegate::applicationShouldTerminate(std::optional<std::uint32_t> quitCode) const {
    return QuitPolicy::mayQuit(appLocks(), isMacLocked(), QuitPolicy::reason(quitCode));
}

void AppDelegate::start(Task<void> task) {
    OrvelSystem::spawn(system_.loop, std::move(task));
}

}  // namespace OrvelApp
