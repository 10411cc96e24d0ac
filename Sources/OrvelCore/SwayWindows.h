#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "OrvelCore/Geometry.h"
#include "OrvelCore/WindowInfo.h"

namespace OrvelCore {

/// A window as sway's tree describes it.
struct SwayWindow {
    /// sway's number of the container, which no later window of the same sway gets.
    WindowID id = 0;
    std::int64_t pid = 0;
    /// Of a Wayland window its app ID, of an X11 window its class; may be empty.
    std::string appID;
    /// In logical coordinates of the compositor.
    Rect frame;
    /// Empty while the window is in the scratchpad and not shown.
    std::string workspace;
    bool isFloating = false;
    bool isFocused = false;

    bool isShown() const { return !workspace.empty(); }
    bool operator==(const SwayWindow&) const = default;
};

/// `tree` is the answer to the request for the tree. Windows without a process are left out.
std::vector<SwayWindow> swayWindows(const nlohmann::json& tree);

/// The windows that this program has moved to the scratchpad, as they were before. They are also
/// written to a file, because a program that was killed cannot bring them back.
struct SwayHidden {
    /// Identifies the sway to which the numbers belong.
    std::string session;
    std::map<WindowID, SwayWindow> windows;

    std::string encoded() const;
    /// Without windows unless the text was encoded for that session.
    static SwayHidden decode(std::string_view text, const std::string& session);

    /// The commands that move a window to the scratchpad and back to its place. A window that the
    /// user has taken out of the scratchpad stays where it is, and becomes tiled if it was.
    static std::string hide(WindowID id);
    static std::string show(const SwayWindow& before, bool isShown);

    bool operator==(const SwayHidden&) const = default;
};

}  // namespace OrvelCore
