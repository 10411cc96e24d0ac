#include "OrvelSystem/WindowServer.h"

#include "OrvelSystem/X11/Displays.h"
#include "OrvelSystem/X11/WindowServerMirror.h"

namespace OrvelSystem {

std::vector<OrvelCore::WindowInfo> WindowServer::onScreenWindows() {
    return WindowServerMirror::shared().windows();
}

std::vector<OrvelCore::WindowID> WindowServer::onScreenWindowNumbers() {
    return WindowServerMirror::shared().numbers();
}

std::map<OrvelCore::WindowID, OrvelCore::Rect> WindowServer::bounds(
    const std::vector<OrvelCore::WindowID>& numbers) {
    return WindowServerMirror::shared().bounds(numbers);
}

std::vector<OrvelCore::Rect> WindowServer::displayBounds() {
    return Displays::known();
}

}  // namespace OrvelSystem
