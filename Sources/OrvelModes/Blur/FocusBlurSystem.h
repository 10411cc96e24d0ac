#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "OrvelBlur/BlurBackend.h"
#include "OrvelCore/Looks.h"
#include "OrvelCore/WindowInfo.h"
#include "OrvelModes/Blur/ModeSurface.h"
#include "OrvelSystem/MainLoop.h"

namespace OrvelModes {

/// What `FocusBlurController` needs of the platform. Main thread only.
struct FocusBlurSystem {
    /// Front-most first.
    std::function<std::vector<OrvelCore::WindowInfo>()> windows;
    /// In window-server coordinates.
    std::function<std::vector<OrvelCore::Rect>()> displays;
    /// Ordered out, with the look of the moment, on the level of ordinary windows. Every click goes
    /// through it.
    std::function<std::unique_ptr<ModeSurface>()> makeSurface;
    std::int64_t ownPID = 0;
    std::function<bool()> reduceMotion;
    /// The process of the app in front; nothing when there is none.
    std::function<std::optional<std::int64_t>()> frontPID;
    /// Whether overlays are drawn in front of all windows, wherever they stand.
    std::function<bool()> drawsOverlaysInFront = [] { return false; };

    /// `look` is read whenever a surface is made.
    static FocusBlurSystem live(OrvelSystem::MainLoop& loop, OrvelBlur::BlurBackend backend,
                                std::int64_t ownPID, std::function<OrvelCore::OverlayLook()> look);
};

}  // namespace OrvelModes
