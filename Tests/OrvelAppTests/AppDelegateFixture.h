#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "OrvelApp/AppDelegate.h"

#include "Support/LockStubs.h"
#include "Support/TemporaryFolder.h"

/// The system's hotkey service, with a finger on the keys.
struct StubHotkeys final : OrvelSystem::HotkeyPlatform {
    using Combination = std::pair<std::uint32_t, std::uint32_t>;

    std::function<void(std::uint32_t)> handler;
    std::map<Combination, std::uint32_t> registered;
    /// Held by other programs.
    std::set<Combination> taken;

    void installEventHandler(std::function<void(std::uint32_t)> pressed) override {
        handler = std::move(pressed);
    }
    std::optional<OrvelSystem::HotkeyRef> registerHotKey(std::uint32_t keyCode,
                                                         std::uint32_t modifiers,
                                                         std::uint32_t number) override {
        if (taken.contains({keyCode, modifiers})) return {};
        registered[{keyCode, modifiers}] = number;
        return number;
    }
    void unregisterHotKey(OrvelSystem::HotkeyRef ref) override {
        std::erase_if(registered, [ref](const auto& entry) { return entry.second == ref; });
    }
    void press(Combination combination) {
        const auto hotkey = registered.find(combination);
        if (hotkey != registered.end()) handler(hotkey->second);
    }
};

/// The whole program among stubs: one display, a sensor that is not there, a guard that runs and
/// a desktop that can be taken, unless a test says otherwise.
struct AppDelegateTest : testing::Test {
    static constexpr StubHotkeys::Combination commandL{37, OrvelSystem::CarbonModifiers::command};

    ManualLoop loop;
    CallLog log;
    StubLockDesktop desktop{loop};
    OrvelCore::InMemorySettingsStore defaults;
    StubMarkers markers{log};
    StubVerifier verifier{log};
    StubHotkeys hotkeys;
    TemporaryFolder folder;
    int awake = 0;
    OrvelSystem::DisplayAwake displayAwake{
        "a reason", [this](const std::string&) { return std::make_unique<StayingAwake>(awake); }};
    bool desktopCanBeTaken = true;
    bool screenIsLocked = false;
    bool reduceTransparency = false;
    int guardStarts = 0;
    int handOffs = 0;
    int activations = 0;
    std::vector<std::string> logged;
    std::optional<OrvelApp::SessionHandlers> events;
    std::optional<OrvelBlur::BlurBackend> backend;
    std::optional<OrvelCore::OverlayLook> look;
    std::map<std::string, std::string, std::less<>> environment;
    OrvelBlur::BlurSupport blurSupport{true, 11, {11}};
    std::function<void(const OrvelApp::SessionHandlers&)> onObserve = [](const auto&) {};
    std::unique_ptr<OrvelApp::AppDelegate> app;

    std::filesystem::path attemptFile() const { return folder / "attempts.json"; }

    void make() { app = std::make_unique<OrvelApp::AppDelegate>(system()); }
    /// Makes the program and lets it come to rest.
    void launch() {
        make();
        app->applicationDidFinishLaunching();
        loop.drain();
    }
    void press(StubHotkeys::Combination combination = commandL) {
        hotkeys.press(combination);
        loop.drain();
    }
    /// Locks, and forgets what that took.
    void lock() {
        app->lockNow(false);
        loop.drain();
        ASSERT_TRUE(app->isMacLocked());
        desktop.log.clear();
        log.clear();
    }
    OrvelUI::LockCardModel& card() { return *desktop.surfaces.at(1)->content->model; }
    void submit(std::string_view password, std::optional<OrvelAuth::PasswordResult> answer) {
        card().type(password);
        card().submit();
        loop.drain();
        if (answer) verifier.verifying.arrive(*answer);
        loop.drain();
    }
    int covers() const {
        return static_cast<int>(std::ranges::count_if(
            desktop.log, [](const std::string& call) { return call.starts_with("1 show"); }));
    }

  private:
    struct StayingAwake final : OrvelSystem::AwakeAssertion {
        explicit StayingAwake(int& counter) : count(counter) { ++count; }
        ~StayingAwake() override { --count; }
        bool isTaken() const override { return true; }
        int& count;
    };

    OrvelApp::AppSystem system() {
        OrvelApp::AppSystem system{.loop = loop,
                                   .defaults = defaults,
                                   .markers = markers,
                                   .attemptFile = attemptFile(),
                                   .verifier = verifier,
                                   .hotkeys = hotkeys,
                                   .displayAwake = displayAwake,
                                   .wallClock = [this] { return desktop.present; },
                                   .kiosk = {.loop = loop, .ownPID = StubLockDesktop::ownPID}};
        system.fullName = "Ada Lovelace";
        system.bootSession = "boot";
        system.accountFailures = [] { return std::nullopt; };
        system.biometricsAvailable = [this] { return desktop.sensor; };
        system.blurSupport = blurSupport;
        system.lockPresenter = [this](OrvelBlur::BlurBackend chosen) {
            backend = chosen;
            auto presenter = desktop.system();
            presenter.makeSurface = [this, make = std::move(presenter.makeSurface)](
                                        const auto& display, const auto& shownLook) {
                look = shownLook;
                return make(display, shownLook);
            };
            return presenter;
        };
        system.kiosk.frontmostApp = [] { return std::nullopt; };
        system.kiosk.setRegular = [] {};
        system.kiosk.setAccessory = [] {};
        system.kiosk.activate = [] {};
        system.kiosk.tryActivate = [this] { return desktopCanBeTaken; };
        system.kiosk.setPresentationOptions = [](std::uint32_t) {};
        system.kiosk.activateApp = [](const OrvelLock::AppHandle&) {};
        system.darkAppearance = [] { return true; };
        system.reduceTransparency = [this] { return reduceTransparency; };
        system.engageMacOSLock = [this] { ++handOffs; };
        system.screenIsLocked = [this] { return screenIsLocked; };
        system.observeSession = [this](OrvelApp::SessionHandlers handlers) {
            events = std::move(handlers);
            onObserve(*events);
        };
        system.guardAvailable = [] { return true; };
        system.startGuard = [this] { ++guardStarts; };
        system.environment = environment;
        system.activateApp = [this] { ++activations; };
        system.log = [this](std::string_view line) { logged.emplace_back(line); };
        return system;
    }
};
