#pragma once

#include "OrvelCore/AttemptLog.h"

#include "AppStubs.h"
#include "Support/TemporaryFolder.h"

/// The whole program on stubs and a manual clock.
struct AppTest : testing::Test {
    ManualLoop loop;
    StubLockDesktop desktop{loop};
    CallLog& log = desktop.log;
    InMemorySettingsStore defaults;
    StubMarkers markers{log};
    StubVerifier verifier{log};
    StubHotkeys hotkeys;
    DisplayAwake awake{"test", [](const std::string&) { return std::make_unique<StubAwake>(); }};
    TemporaryFolder folder;
    std::vector<std::string> lines;
    std::map<std::string, std::string, std::less<>> environment;
    bool passwordSuffices = true;
    bool lockerIsKnown = true;
    AuthenticationHandlers authentication;
    bool macIsLocked = false;
    bool grabsAreFree = true;
    BlurSupport blurSupport{true, 15, {15}};
    std::optional<BlurBackend> backend;
    bool reduceTransparency = false;
    std::optional<OverlayLook> look;
    SessionHandlers session;
    std::vector<WindowInfo> windows{{80, 8, 0, {0, 0, 100, 100}}, {70, 7, 0, {50, 50, 100, 100}}};
    std::vector<RunningApp> running{{7, "app.7", "Seven"}, {8, "app.8", "Eight"}};
    std::int64_t frontPID = 8;
    Workspace::Events workspace;
    std::function<void()> clickCover;
    PanelRecord badge;
    std::shared_ptr<LockCardModel> badgeModel;
    std::optional<Point> peek;
    StatusMenuController* statusMenu = nullptr;
    StatusItemRecord icon;
    std::vector<StubCornerPanel*> corners;
    int orders = 0;                   // of overlays relative to windows
    std::vector<std::string> toasts;  // their accessible names
    bool interfaceSounds = true;
    SettingsModel* settings = nullptr;
    OnboardingModel* guide = nullptr;
    StubWindow* guideWindow = nullptr;
    std::set<std::string> installed;
    bool opensAtLogin = false;
    std::error_code loginItemError;
    std::function<void(std::size_t)> answerAlert;
    std::function<void(const std::vector<std::string>&)> chooseApps;
    bool trashWorks = true;
    StubAnswer<bool> guardUnregistered{true};
    ProgramFile::State programFile = ProgramFile::State::current;
    bool asLoginItem = true;
    std::unique_ptr<AppDelegate> app;

    std::filesystem::path attempts() const { return folder.path() / "attempts.json"; }

    MenuSystem menu() {
        MenuSystem made;
        made.makeStatusItem = [this](StatusMenuController& controller) {
            statusMenu = &controller;
            return std::make_unique<StubStatusItem>(icon);
        };
        made.panel.makePanel = [](const auto&) { return std::make_unique<StubPanel>(); };
        made.panel.watchPresses = [](const auto&) { return nullptr; };
        made.panel.watchActivations = [](const auto&) { return nullptr; };
        const auto named = [](std::int64_t pid) {
            return std::optional(
                RunningApp{pid, fmt::format("app.{}", pid), fmt::format("App {}", pid)});
        };
        made.front = [this, named] { return named(frontPID); };
        made.app = named;
        made.nameForBundleID = [this](const std::string& id) {
            return installed.contains(id) ? std::optional("name of " + id) : std::nullopt;
        };
        made.iconForBundleID = [](const auto&) { return nullptr; };
        made.screenReaderOn = [] { return false; };
        made.fullKeyboardAccess = [] { return false; };
        made.quit = [this] { log.push_back("quit"); };
        return made;
    }

    UpdateSystem updates() {
        UpdateSystem made;
        made.check = [this](const auto&) -> Task<UpdateResult> {
            log.push_back("check for updates");
            return answer();
        };
        made.now = [this] { return desktop.present; };
        made.schedule = [](Date, const auto&) {};
        made.cancel = [this] { log.push_back("cancel check"); };
        made.verify = [this](const auto&, const auto&) {
            return std::optional<std::string>("intact");
        };
        made.open = [this](const auto&, std::string_view) {
            log.push_back("open package");
            return true;
        };
        return made;
    }
    static Task<UpdateResult> answer() {
        co_return UpdateReady{.item = {.shortVersion = "2.0"}, .package = "/tmp/package"};
    }

    /// Apps 7 and 8 have one window each, 8's in front; covers only log their calls.
    CoverSystem covers() {
        CoverSystem made{.appLock = {.loop = loop, .verifier = verifier, .ownPID = 1}};
        made.makeSurface = [this](const CoverRequest& request, BlurBackend,
                                  std::function<void()> onClick) {
            clickCover = std::move(onClick);
            return std::make_unique<StubCover>(log, request.pid);
        };
        made.sources = {.windows = [this] { return windows; },
                        .windowNumbers =
                            [] {
                                return std::vector<std::int64_t>({80, 70});
                            },
                        .windowBounds = [](const auto&) { return std::map<std::int64_t, Rect>(); },
                        .displays = [] { return oneDisplay; },
                        .activePID = [this] { return frontPID; },
                        .peekPoint = [this] { return peek; },
                        .mouseDown = [] { return false; },
                        .now = [this] { return loop.uptime(); },
                        .ownPID = 1};
        made.watcherReads = {.numbers = [] { return std::vector<std::int64_t>(); },
                             .bounds = [](const auto&) { return std::map<std::int64_t, Rect>(); },
                             .button = [] { return false; },
                             .option = [] { return false; },
                             .observe = [](const auto&) { return std::make_shared<int>(); }};
        made.badges = {
            .makePanel = [this](const Rect&,
                                int) { return std::make_unique<StubOverlayPanel>(badge); },
            .makeContent =
                [this](auto model, const auto&...) {
                    badgeModel = std::move(model);
                    return nullptr;
                },
            .visibleFrame = [] { return oneDisplay.front(); },
            .scale = [] { return 1.0; },
            .isAbove = [](auto, auto) { return true; }};
        auto& lock = made.appLock;
        lock.frontApp = [this] { return FrontApp{frontPID, fmt::format("app.{}", frontPID)}; };
        lock.appIdentity = [](std::int64_t pid) {
            return std::optional(OrvelCovers::AppIdentity{fmt::format("App {}", pid), nullptr});
        };
        lock.activateOrvel = [] {};
        lock.orvelIsActive = [] { return true; };
        lock.activateApp = [](std::int64_t) {};
        lock.hideApp = [](std::int64_t) {};
        lock.appIsActive = [](std::int64_t) { return false; };
        lock.biometricsAvailable = [] { return false; };
        lock.wallClock = [this] { return desktop.present; };
        made.running = [this] { return running; };
        made.observeWorkspace = [this](Workspace::Events events) {
            workspace = std::move(events);
            return std::make_shared<int>();
        };
        return made;
    }

    ModeSystem modes() {
        const auto surface = [this](std::string name) {
            return std::make_unique<StubModeSurface>(log, std::move(name), orders);
        };
        const auto displays = [] { return oneDisplay; };
        ModeSystem made;
        made.quickBlur = [this, surface, displays](BlurBackend, ModeSystem::Look,
                                                   std::function<bool()> macLocked) {
            QuickBlurSystem blur;
            blur.displays = displays;
            blur.makeSurface = [surface](bool) { return surface("blur"); };
            blur.frontApp = [this] { return std::optional(frontPID); };
            blur.activateOrvel = [] {};
            blur.activateApp = [this](std::int64_t pid) {
                log.push_back(fmt::format("front {}", pid));
            };
            blur.reduceMotion = [] { return false; };
            blur.pill = [](const auto&...) { return nullptr; };
            blur.macLocked = std::move(macLocked);
            return blur;
        };
        made.focusBlur = [this, surface, displays](BlurBackend, ModeSystem::Look shown) {
            FocusBlurSystem blur;
            blur.windows = [this] { return windows; };
            blur.displays = displays;
            blur.makeSurface = [surface, shown] {
                return surface(fmt::format("focus {}", shown().radius));
            };
            blur.ownPID = 1;
            blur.reduceMotion = [] { return false; };
            blur.frontPID = [this] { return std::optional(frontPID); };
            return blur;
        };
        made.observeAppearance = [](const auto&) { return nullptr; };
        made.idle = {.idleSeconds = [] { return 0.0; },
                     .displayKeptAwake = [] { return false; },
                     .sessionLocked = [] { return false; },
                     .now = [this] { return loop.uptime(); }};
        made.makeCornerPanel = [this] { return std::make_unique<StubCornerPanel>(corners); };
        made.screens = displays;
        made.feedback = {
            .announce = [this](const std::string& text) { log.push_back("say " + text); },
            .play =
                [this](LockSound sound) {
                    log.push_back(fmt::format("play {}", static_cast<int>(sound)));
                },
            .haptic = [](Haptic) {}};
        made.interfaceSoundsOn = [this] { return interfaceSounds; };
        made.toasts = {.makePanel = [this] { return std::make_unique<StubToastPanel>(toasts); },
                       .screens = displays,
                       .pointer = [] { return Point{}; },
                       .reduceMotion = [] { return false; },
                       .increasedContrast = [] { return false; }};
        return made;
    }

    UninstallSystem uninstallSystem() {
        const auto note = [this](const char* what) {
            return [this, what] { log.push_back(what); };
        };
        return {.unregisterGuard =
                    [this] {
                        log.push_back("guard unregistered");
                        return unregisteringGuard();
                    },
                .unregisterLoginItem = note("login item removed"),
                .removeSettings = [this] { defaults.removeAll(); },
                .removeSupportFolder = note("folder removed"),
                .moveAppToTrash = [this] { return trashWorks; },
                .quit = note("quit")};
    }
    Task<void> unregisteringGuard() { (void)co_await guardUnregistered(); }

    WindowSystem windowSystem() {
        WindowSystem made;
        made.settings = {.makeWindow =
                             [this](SettingsModel& model) {
                                 settings = &model;
                                 return std::make_unique<StubWindow>(log, "settings");
                             },
                         .activate = [] {}};
        made.onboarding = {.makeWindow =
                               [this](OnboardingModel& model) {
                                   guide = &model;
                                   auto window = std::make_unique<StubWindow>(log, "guide");
                                   guideWindow = window.get();
                                   return window;
                               },
                           .activate = [] {},
                           .isActive = [] { return true; },
                           .observeActivation = [](const auto&) { return nullptr; }};
        made.recorderHooks = [](const auto&, auto pause, auto resume) {
            ShortcutRecorder::Hooks hooks{.pauseShortcuts = pause, .resumeShortcuts = resume};
            hooks.watchKeys = [](const auto&) {};
            hooks.watchEnds = [](const auto&) {};
            hooks.stopWatching = [] {};
            return hooks;
        };
        made.opensAtLogin = [this] { return opensAtLogin; };
        made.setOpensAtLogin = [this](bool on) {
            if (!loginItemError) opensAtLogin = on;
            return loginItemError;
        };
        made.desktopCorners = [] { return std::set{TriggerSettings::Corner::topLeft}; };
        made.openNotificationSettings = [this] { log.push_back("open notification settings"); };
        made.openURL = [this](const std::string& url) { log.push_back("open " + url); };
        made.alert = [this](const Alert& alert, auto chosen) {
            log.push_back(alert.message);
            answerAlert = std::move(chosen);
        };
        made.chooseApplications = [this](auto chosen) { chooseApps = std::move(chosen); };
        made.uninstall = uninstallSystem();
        return made;
    }

    AppSystem system() {
        KioskSystem kiosk{.loop = loop, .ownPID = StubLockDesktop::ownPID};
        kiosk.frontmostApp = [] { return AppHandle{99, 5}; };
        kiosk.setRegular = [] {};
        kiosk.setAccessory = [] {};
        kiosk.activate = [] {};
        kiosk.tryActivate = [this] { return grabsAreFree; };
        kiosk.setPresentationOptions = [this](std::uint32_t options) {
            log.push_back(options != 0 ? "desktop taken" : "desktop given back");
        };
        kiosk.activateApp = [this](const AppHandle& previous) {
            log.push_back(fmt::format("activate {}", previous.window));
        };
        AppSystem made{.loop = loop,
                       .defaults = defaults,
                       .markers = markers,
                       .attemptFile = attempts(),
                       .verifier = verifier,
                       .hotkeys = hotkeys,
                       .displayAwake = awake,
                       .wallClock = [this] { return desktop.present; },
                       .kiosk = kiosk,
                       .covers = covers(),
                       .modes = modes(),
                       .menu = menu(),
                       .windows = windowSystem(),
                       .updates = updates()};
        made.fullName = "Ada Lovelace";
        made.bootSession = thisBoot;
        made.accountLimit = [] { return std::nullopt; };
        made.accountFailures = [] { return std::nullopt; };
        made.passwordSuffices = [this] { return passwordSuffices; };
        made.observeAuthentication = [this](AuthenticationHandlers handlers) {
            authentication = std::move(handlers);
        };
        made.sessionLockerIsKnown = [this] { return lockerIsKnown; };
        made.sessionLockerIsAvailable = made.sessionLockerIsKnown;
        made.biometricsAvailable = [this] { return desktop.sensor; };
        made.blurSupport = blurSupport;
        made.lockPresenter = [this](BlurBackend chosen) {
            backend = chosen;
            auto presenter = desktop.system();
            presenter.makeSurface = [this, make = presenter.makeSurface](const auto& display,
                                                                         const OverlayLook& shown) {
                look = shown;
                return make(display, shown);
            };
            return presenter;
        };
        made.darkAppearance = [] { return true; };
        made.reduceTransparency = [this] { return reduceTransparency; };
        made.engageMacOSLock = [this] { log.push_back("engageMacOSLock"); };
        made.screenIsLocked = [this] { return macIsLocked; };
        made.observeSession = [this](SessionHandlers handlers) { session = std::move(handlers); };
        made.guardAvailable = [] { return true; };
        made.startGuard = [this](bool renews) {
            log.push_back(renews ? "startGuard" : "startGuard, keeping one that runs");
        };
        made.programFile = [this] { return programFile; };
        made.restart = [this](const std::vector<std::string>& urls) {
            log.push_back(fmt::format("restart {}", fmt::join(urls, " ")));
        };
        made.environment = environment;
        made.asLoginItem = asLoginItem;
        made.activateApp = [] {};
        made.log = [this](std::string_view line) { lines.emplace_back(line); };
        return made;
    }

    /// Skips the first-run guide; tests of their own open it.
    AppTest() { defaults.setBool("onboardingCompleted", true); }

    void launch() {
        app = std::make_unique<AppDelegate>(system());
        app->applicationDidFinishLaunching();
        loop.drain();
        loop.advance(1.0);  // until the status item counts as shown
    }
    void lock() {
        app->lockNow(false);
        loop.drain();
        ASSERT_TRUE(app->isMacLocked());
    }
    long count(const std::string& call) const { return std::count(log.begin(), log.end(), call); }
    LockCardModel& card() { return *desktop.surfaces.at(1)->content->model; }
    void type() {
        card().type("secret");
        card().submit();
        loop.drain();
    }
    void submit(PasswordResult verdict) {
        type();
        verifier.verifying.arrive(std::move(verdict));
        loop.drain();
    }
};
