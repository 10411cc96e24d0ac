#pragma once

#include "OrvelAuth/PasswordVerifying.h"
#include "OrvelCore/LockMarker.h"
#include "OrvelCore/WeakList.h"
#include "OrvelLock/HandoffPerforming.h"
#include "OrvelLock/KioskControlling.h"
#include "OrvelLock/LockPresenterSystem.h"
#include "OrvelLock/LockPresenting.h"

#include "Support/ManualLoop.h"
#include "Support/StubAnswer.h"

/// The calls to all collaborators, in order.
using CallLog = std::vector<std::string>;

struct StubLockPresenter final : LockPresenting {
    explicit StubLockPresenter(CallLog& calls) : log(calls) {}
    CallLog& log;
    bool covering = false;
    std::function<void()> onUncover = [] {};

    void cover() override {
        covering = true;
        log.push_back("cover");
    }
    void uncover() override {
        covering = false;
        log.push_back("uncover");
        onUncover();
    }
    void showVerifying() override { log.push_back("verifying"); }
    void showWrongPassword() override { log.push_back("wrongPassword"); }
    void showCooldown(double until) override { log.push_back(fmt::format("cooldown {}", until)); }
    void showPasswordsPaused() override { log.push_back("passwordsPaused"); }
    void showReady() override { log.push_back("ready"); }
    void showUnavailable() override { log.push_back("unavailable"); }
    void reconcileScreens() override { log.push_back("reconcileScreens"); }
};

struct StubKiosk final : KioskControlling {
    explicit StubKiosk(CallLog& calls) : log(calls) {}
    CallLog& log;
    /// The result of `engage`.
    StubAnswer<bool> engaging{true};
    /// The result of `reassert`: whether no other program holds the desktop.
    bool desktopIsFree = true;
    /// Whether the desktop was grabbed and not released.
    bool holds = false;
    /// The result of `isHeldBySystemLock`, and how often it was called.
    bool systemLockHolds = true;
    int systemLockLooks = 0;

    void prepare() override {}
    bool isHeldBySystemLock() override {
        ++systemLockLooks;
        return systemLockHolds;
    }
    Task<bool> engage() override {
        log.push_back("engage");
        auto answer = engaging();
        const bool engaged = co_await answer;
        holds = holds || engaged;
        co_return engaged;
    }
    void release(bool restoringFocus) override {
        holds = false;
        log.push_back(restoringFocus ? "release restoring" : "release");
    }
    bool reassert() override {
        holds = desktopIsFree;
        log.push_back("reassert");
        return holds;
    }
    void yield() override {
        holds = false;
        log.push_back("yield");
    }
};

struct StubMarkers final : MarkerStoring {
    explicit StubMarkers(CallLog& calls) : log(calls) {}
    CallLog& log;
    bool writable = true;
    std::optional<LockMarker> marker;

    std::expected<void, std::error_code> write(const LockMarker& written) override {
        log.push_back("write");
        if (!writable)
            return std::unexpected(std::make_error_code(std::errc::read_only_file_system));
        marker = written;
        return {};
    }
    void clear() override {
        log.push_back("clear");
        marker.reset();
    }
    std::optional<LockMarker> activeMarker(std::string_view bootSession) const override {
        return marker && marker->bootSession == bootSession ? marker : std::nullopt;
    }
};

struct StubHandoff final : HandoffPerforming {
    explicit StubHandoff(CallLog& calls) : log(calls) {}
    CallLog& log;
    void engageMacOSLock() override { log.push_back("engageMacOSLock"); }
};

struct StubVerifier final : PasswordVerifying {
    explicit StubVerifier(CallLog& calls) : log(calls) {}
    CallLog& log;
    StubAnswer<PasswordResult> verifying{std::nullopt};

    Task<PasswordResult> verify(Password password) override {
        log.push_back(fmt::format("verify {}", password.view()));
        return verifying();
    }
};

/// A cover. It logs its calls with the desktop that created it, whose log outlives the cover.
struct StubLockSurface final : LockSurface {
    StubLockSurface(std::uint32_t display, const Rect& frame, CallLog& calls)
        : id(display), log(calls), frame_(frame) {}
    ~StubLockSurface() override { call("gone"); }

    std::uint32_t id;
    CallLog& log;
    bool keyboard = false;
    bool key = false;
    /// Whether `makeKey` has an effect.
    bool canTakeKey = true;
    bool shown = false;
    std::optional<LockSurfaceContent> content;
    /// Finishes a fade-out; empty until `hide` was called with a duration.
    std::function<void()> finishHide;

    Rect frame() const override { return frame_; }
    bool acceptsKeyboard() const override { return keyboard; }
    void setAcceptsKeyboard(bool accepts) override {
        keyboard = accepts;
        if (!accepts) key = false;
    }
    bool isKey() const override { return key; }
    bool owns(WindowID window) const override { return window == id + 100; }
    void makeKey() override {
        call("makeKey");
        if (canTakeKey) key = keyboard;
    }
    void setFrame(const Rect& frame) override {
        frame_ = frame;
        call("setFrame");
    }
    void setContent(const std::optional<LockSurfaceContent>& newContent) override {
        content = newContent;
        call(!content                             ? "content none"
             : content->kind == LockContent::card ? "content card"
                                                  : "content pill");
    }
    void show(int radius, double duration) override {
        shown = true;
        call(fmt::format("show {} {}", radius, duration));
    }
    void hide(double duration, std::function<void()> completion) override {
        call(fmt::format("hide {}", duration));
        finishHide = [this, completion = std::move(completion)] {
            shown = false;
            completion();
        };
        if (duration <= 0) finishHide();
    }
    void remove() override {
        shown = false;
        call("remove");
    }

  private:
    void call(std::string_view what) { log.push_back(fmt::format("{} {}", id, what)); }

    Rect frame_;
};

struct StubBiometricContext final : OrvelSystem::BiometricContext {
    bool valid = true;
    void invalidate() override { valid = false; }
};

/// The desktop of the lock presenter: displays, covers, the front app and the sensor.
struct StubLockDesktop {
    static constexpr std::int64_t ownPID = 7;

    explicit StubLockDesktop(ManualLoop& mainLoop) : loop(mainLoop) {}

    ManualLoop& loop;
    CallLog log;
    std::vector<DisplayInfo> displays{{1, {0, 0, 100, 100}, {}}};
    Point pointer;
    bool appIsActive = true;
    bool reduceMotion = false;
    bool sensor = false;
    Date present = dateFromSecondsSince1970(1'000'000);
    /// The latest cover of each display.
    std::map<std::uint32_t, StubLockSurface*> surfaces;
    StubAnswer<BiometricResult> prompting{std::nullopt};
    std::vector<std::shared_ptr<StubBiometricContext>> contexts;
    std::vector<std::string> reasons;
    std::optional<LockPresenterEvents> events;

    LockPresenterSystem system() {
        return {
            .loop = loop,
            .ownPID = ownPID,
            .displays = [this] { return displays; },
            .pointer = [this] { return pointer; },
            .makeSurface =
                [this](const DisplayInfo& display, const OrvelCore::OverlayLook&) {
                    auto surface =
                        std::make_unique<StubLockSurface>(display.id, display.frame, log);
                    surfaces[display.id] = surface.get();
                    return surface;
                },
            .appIsActive = [this] { return appIsActive; },
            .activateApp = [this] { log.push_back("activateApp"); },
            .biometricsAvailable = [this] { return sensor; },
            .makeBiometricContext =
                [this] {
                    contexts.push_back(std::make_shared<StubBiometricContext>());
                    return contexts.back();
                },
            .evaluateBiometrics =
                [this](const std::shared_ptr<OrvelSystem::BiometricContext>&, std::string reason) {
                    reasons.push_back(std::move(reason));
                    return prompting();
                },
            .reduceMotion = [this] { return reduceMotion; },
            .wallClock = [this] { return present; },
            .observe =
                [this](LockPresenterEvents handlers) {
                    events = std::move(handlers);
                    return Subscription(std::shared_ptr<void>(
                        this, [](StubLockDesktop* desktop) { desktop->events.reset(); }));
                },
        };
    }
};
