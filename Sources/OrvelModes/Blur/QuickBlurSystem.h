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

/// What `QuickBlurController` needs from the platform. Main thread only.
struct QuickBlurSystem {
    /// The frames of the displays, in window-server coordinates, the primary display first.
    std::function<std::vector<OrvelCore::Rect>()> displays;
    /// Makes an overlay, ordered out, with the current look, above everything except a lock. It
    /// does not pass clicks through.
    std::function<std::unique_ptr<ModeSurface>(bool keyboard)> makeSurface;
    /// `nullopt` when no app, or this program, is in front.
    std::function<std::optional<std::int64_t>()> frontApp;
    std::function<void()> activateOrvel;
    std::function<void(std::int64_t pid)> activateApp;
    std::function<bool()> reduceMotion;
    /// Makes the pill that says how to end the blur of that display and ends it when it is tapped.
    std::function<std::shared_ptr<OrvelBlur::PanelContent>(const OrvelCore::Rect& display,
                                                           std::function<void()> onReveal)>
        pill;
    /// Whether the screen lock is up or starting.
    std::function<bool()> macLocked;

    /// `look` is called whenever a surface is made.
    static QuickBlurSystem live(OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
                                std::int64_t ownPID, std::function<OrvelCore::OverlayLook()> look,
                                std::function<bool()> macLocked);
};

}  // namespace OrvelModes
