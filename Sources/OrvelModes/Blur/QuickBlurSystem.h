#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelBlur/BlurBackend.h"
#include "OrvelCore/Geometry.h"
#include "OrvelCore/Looks.h"
#include "OrvelModes/Blur/ModeSurface.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelModes {

/// What `QuickBlurController` needs of the platform. Main thread only.
struct QuickBlurSystem {
    /// In window-server coordinates, the primary display first.
    std::function<std::vector<OrvelCore::Rect>()> displays;
    /// Ordered out, with the look of the moment, above all but a lock. Swallows clicks.
    std::function<std::unique_ptr<ModeSurface>(bool keyboard)> makeSurface;
    /// Nothing when no app is in front, or this program.
    std::function<std::optional<std::int64_t>()> frontApp;
    std::function<void()> activateOrvel;
    std::function<void(std::int64_t pid)> activateApp;
    std::function<bool()> reduceMotion;
    /// What says how to end the blur of that display, and does it when tapped.
    std::function<std::shared_ptr<OrvelBlur::PanelContent>(const OrvelCore::Rect& display,
                                                           std::function<void()> onReveal)>
        pill;
    /// The whole-Mac lock is up or starting.
    std::function<bool()> macLocked;

    /// `look` is read whenever a surface is made.
    static QuickBlurSystem live(OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
                                std::int64_t ownPID, std::function<OrvelCore::OverlayLook()> look,
                                std::function<bool()> macLocked);
};

}  // namespace OrvelModes
