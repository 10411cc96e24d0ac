#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>

namespace OrvelCore {

/// The app in front.
struct FrontApp {
    std::int64_t pid = 0;
    /// Nothing for a process that is no bundled app.
    std::optional<std::string> bundleID;
    bool operator==(const FrontApp&) const = default;
};

/// The cases of `AppLockAction`.
namespace AppLockActions {

struct Lock {
    std::int64_t pid = 0;
    bool operator==(const Lock&) const = default;
};
struct RequestUnlock {
    std::int64_t pid = 0;
    bool operator==(const RequestUnlock&) const = default;
};
struct Ignore {
    bool operator==(const Ignore&) const = default;
};

}  // namespace AppLockActions

using AppLockAction =
    std::variant<AppLockActions::Lock, AppLockActions::RequestUnlock, AppLockActions::Ignore>;

/// Which apps can be locked, and what the shortcut for it does right now.
namespace AppLockRules {

/// This program, and the parts of the desktop without which nobody could unlock anything.
inline constexpr std::array<std::string_view, 8> excluded = {
    "com.brindlewick.karvo",    "com.apple.loginwindow",   "com.apple.dock",
    "com.apple.systemuiserver", "com.apple.controlcenter", "com.apple.notificationcenterui",
    "com.apple.Spotlight",      "com.apple.WindowManager",
};

/// False without an identifier.
bool canLock(const std::optional<std::string>& bundleID);

/// One shortcut locks and asks for unlock. `badgePID` is the app whose badge is on the screen: it
/// wins over the app in front, since this program itself is in front while a badge has the
/// keyboard.
AppLockAction shortcut(const std::optional<FrontApp>& front, std::optional<std::int64_t> badgePID,
                       const std::set<std::int64_t>& locked);

}  // namespace AppLockRules

}  // namespace OrvelCore
