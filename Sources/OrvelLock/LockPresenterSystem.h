#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "OrvelAuth/BiometricResult.h"
#include "OrvelBlur/BlurBackend.h"
#include "OrvelCore/Date.h"
#include "OrvelCore/Geometry.h"
#include "OrvelCore/Looks.h"
#include "OrvelCore/Observed.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelLock/DisplayInfo.h"
#include "OrvelLock/LockSurface.h"
#include "OrvelSystem/BiometricContext.h"
#include "OrvelSystem/MainLoop.h"
#include "OrvelSystem/Task.h"

namespace OrvelLock {

/// What the platform reports to a presenter that covers the screen. Called on the main thread.
struct LockPresenterEvents {
    /// The app with that process ID came to the front.
    std::function<void(std::int64_t pid)> appActivated;
    /// The window with that number became or stopped being the key window.
    std::function<void(OrvelCore::WindowID window)> keyChanged;
};

struct LockPresenterSystem {
    OrvelSystem::MainLoop& loop;
    std::int64_t ownPID;
    /// In order of preference for the card.
    std::function<std::vector<DisplayInfo>()> displays = {};
    /// In window-server coordinates.
    std::function<OrvelCore::Point()> pointer = {};
    /// Makes a hidden cover without content, on the display's frame and above all windows of other
    /// apps.
    std::function<std::unique_ptr<LockSurface>(const DisplayInfo&, const OrvelCore::OverlayLook&)>
        makeSurface = {};
    /// Does ahead what the first cover of this display would have to wait for, without showing
    /// anything.
    std::function<void(const DisplayInfo&, const OrvelCore::OverlayLook&,
                       const LockSurfaceContent&)>
        rehearse = [](const auto&...) {};
    std::function<bool()> appIsActive = {};
    std::function<void()> activateApp = {};
    std::function<bool()> biometricsAvailable = {};
    std::function<std::shared_ptr<OrvelSystem::BiometricContext>()> makeBiometricContext = {};
    /// Prompts until the sensor gives a result or the context is invalidated. `reason` completes
    /// the sentence that the system shows.
    std::function<OrvelSystem::Task<OrvelAuth::BiometricResult>(
        std::shared_ptr<OrvelSystem::BiometricContext>, std::string reason)>
        evaluateBiometrics = {};
    std::function<bool()> reduceMotion = {};
    std::function<OrvelCore::Date()> wallClock = {};
    /// Reports events until the returned observation is destroyed.
    std::function<OrvelCore::Subscription(LockPresenterEvents)> observe = {};

    static LockPresenterSystem live(OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend);
};

}  // namespace OrvelLock
