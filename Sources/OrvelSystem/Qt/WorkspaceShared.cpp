#include <QGuiApplication>
#include <memory>
#include <utility>

#include "OrvelSystem/Wayland/Sway.h"
#include "OrvelSystem/Wayland/SwayWorkspace.h"
#include "OrvelSystem/Wayland/WaylandWorkspace.h"
#include "OrvelSystem/X11/X11Workspace.h"

namespace OrvelSystem {

namespace {

/// Chosen by the window system that Qt connects to.
std::unique_ptr<Workspace> make() {
    if (QGuiApplication::platformName() == QLatin1String("xcb"))
        return std::make_unique<X11Workspace>();
    if (auto sway = Sway::shared()) return std::make_unique<SwayWorkspace>(std::move(sway));
    return std::make_unique<WaylandWorkspace>();
}

}  // namespace

Workspace& Workspace::shared() {
    static const std::unique_ptr<Workspace> workspace = make();
    return *workspace;
}

}  // namespace OrvelSystem
