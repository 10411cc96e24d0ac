#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "OrvelCore/Lifetime.h"
#include "OrvelLock/KioskControlling.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelLock {

/// A running app, as far as bringing it back to the front needs it.
struct AppHandle {
    std::int64_t pid = 0;
    /// The number of the window that had its focus; 0 where apps are activated by process.
    std::uint64_t window = 0;
    bool operator==(const AppHandle&) const = default;
};

struct KioskSystem {
    OrvelSystem::MainLoop& loop;
    std::int64_t ownPID;
    std::function<std::optional<AppHandle>()> frontmostApp = {};
    /// Makes this an app like any other, which may come to the front, or an agent again.
    std::function<void()> setRegular = {};
    std::function<void()> setAccessory = {};
    std::function<void()> activate = {};
    /// Whether this app is the active one. Where being active means that the keys reach it, each
    /// call is one more step on the way to them.
    std::function<bool()> tryActivate = {};
    /// Seconds after which `engage` gives up.
    double activationTimeout = 0.25;
    /// `KioskController::options` to shut the desktop off, 0 to give it all back, grabs included.
    std::function<void(std::uint32_t)> setPresentationOptions = {};
    std::function<void(const AppHandle&)> activateApp = {};
    /// As in `KioskControlling`. Without the keys `reassert` must not raise the covers either: the
    /// user may be typing into the locker that has them.
    std::function<void()> prepare = [] {};
    std::function<bool()> reassert = [] { return true; };
    std::function<void()> yield = [] {};
    std::function<bool()> isHeldBySystemLock = [] { return true; };
    /// Sets what is called when `reassert` or `isHeldBySystemLock` may answer differently.
    std::function<void(std::function<void()>)> observe = [](const auto&) {};

    static KioskSystem live(OrvelSystem::MainLoop& loop);
};

/// Turns the agent into the one foreground app with the desktop's ways out shut off. A crash
/// needs no undoing: all that it takes belongs to the process and dies with it.
class KioskController final : public KioskControlling {
  public:
    /// Of `NSApplicationPresentationOptions`: `hideDock`, `hideMenuBar`, `disableAppleMenu`,
    /// `disableProcessSwitching`, `disableForceQuit`, `disableSessionTermination` and
    /// `disableHideApplication`. A platform without these shuts off what answers to them.
    static constexpr std::uint32_t options = 0x1FA;

    explicit KioskController(KioskSystem system);

    /// Takes up to `activationTimeout`. The controller must outlive the task.
    OrvelSystem::Task<bool> engage() override;
    void release(bool restoringFocus) override;
    void prepare() override;
    bool reassert() override;
    void yield() override;
    bool isHeldBySystemLock() override;

  private:
    KioskSystem system_;
    std::optional<AppHandle> previousApp_;
    OrvelCore::Lifetime lifetime_;
};

}  // namespace OrvelLock
